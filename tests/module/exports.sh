#!/usr/bin/env bash
# exports.sh MODULE: the module exports the six functions and nothing else, needs no library but the
# language's own, and calls the system only to read files and load modules.
set -euo pipefail

scope=--dynamic
[[ $1 != *.a ]] || scope=--extern-only
exported=$(nm $scope --defined-only --demangle "$1" | sed -nE 's/^[0-9a-f]+ . //p' | sort)
wanted=$(sort <<'END'
CheckFiltersFromIDList(wchar_t const*, int*, int, int, unsigned char*, int)
CheckFiltersFromList(wchar_t*, int*, int, int, unsigned char*, int)
CheckOneFilter(wchar_t const*, int, int)
CheckValidFilterID(int)
GetNumTypeScoutProcs()
TypeScoutFile(wchar_t const*)
END
)
diff <(echo "$wanted") <(echo "$exported")

[[ $1 != *.a ]] || exit 0
needed=$(readelf -d "$1" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')
if others=$(grep -vE '^(libstdc\+\+|libm|libgcc_s|libc|ld-linux-x86-64)\.so' <<<"$needed"); then
  echo "needs more than the standard library: $others"
  exit 1
fi

# What it asks of the system: files are only read, and by calls that tests/posix/watched_calls.cpp
# watches. Names of the compiler's own begin with '_'; the others left out work on memory alone.
imported=$(nm -D --undefined-only "$1" | awk '{print $2}' | sed 's/@.*//' |
  grep -vE '^(_|(mem|wmem|str|wcs)[a-z]+$|bcmp$)' | sort)
allowed=(
  close dl_iterate_phdr dlclose dlinfo dlopen dlsym fstat getauxval getcwd geteuid nanosleep open
  pread pthread_mutex_lock pthread_mutex_unlock readlink realpath secure_getenv stat
)
diff <(printf '%s\n' "${allowed[@]}") <(echo "$imported")
