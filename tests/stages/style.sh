# style: formatter and linters (C++, shell, Python) report nothing; documents name what exists
need clang clang-format clang-tidy flake8 shellcheck
git ls-files -z '*.h' '*.cpp' | xargs -0 clang-format --dry-run --Werror

# Some scripts have no extension; their first line tells.
{ git ls-files '*.sh'; git grep -lE '^#!/usr/bin/env bash$'; } | sort -u |
  xargs shellcheck --shell=bash --external-sources --source-path=SCRIPTDIR
git ls-files -z '*.py' | xargs -0 flake8 --max-line-length 120
tools/guarantees.py  # names tests that exist

configure asan  # the compile commands of clang
git ls-files -z 'catalogue/*.cpp' 'core/*.cpp' 'detectors/*.cpp' 'host/*.cpp' 'modules/*.cpp' \
  'cli/*.cpp' ':!*windows*' |
  xargs -0 -P "$(nproc)" -n 4 clang-tidy -p build/asan --quiet 2>build/tidy.log
