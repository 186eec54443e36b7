#!/usr/bin/env bash
# Measures, and writes docs/performance.md and its plot; ./bench calls it.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
build=build/bench
list=$build/list.txt

cmake --preset bench >"$build.log"
cmake --build $build --target bench_detectors bench_compare typescout_cli >>"$build.log"

# Several thousand files of this machine, the same ones in every run.
find /etc /usr/bin /usr/include /usr/lib /usr/share -type f -readable 2>/dev/null | LC_ALL=C sort |
  shuf -n 5000 --random-source=<(yes) >"$list"

echo "comparing over $(wc -l <"$list") files" >&2
$build/bench/bench_compare "$list" >$build/compare.json
echo "measuring the rows" >&2
$build/bench/bench_detectors --benchmark_format=json --benchmark_min_time=0.02 >$build/detectors.json

# The peak of memory over the list, and the system calls of one scan.
peak() { { /usr/bin/time -f %M "$@" >/dev/null; } 2>&1 | tail -1; }
ours=$(peak $build/typescout -j 1 -f "$list")
theirs=$(peak file -f "$list")
{
  echo "Peak memory over the list: \`typescout -j 1\` $ours KiB, \`file\` $theirs KiB."
  echo
  echo "## The system calls of one scan"
  echo
  echo "A file of 4,000 random bytes that no row recognises, so that every row is asked; what the"
  echo "program needs to start is left out."
  echo
  head -c 4000 <(openssl enc -aes-128-ctr -nosalt -pass pass:1 </dev/zero 2>/dev/null) >$build/unknown.bin || true
  echo '```'
  strace -f -P $build/unknown.bin -e trace=all $build/typescout -j 1 $build/unknown.bin 2>&1 >/dev/null |
    sed -n 's/^\(\[pid *[0-9]*\] \)\{0,1\}\([a-z0-9_]*\)(.*/\2/p' | sort | uniq -c | sort -rn
  echo '```'
} >$build/notes.md
python3 bench/report.py $build/detectors.json $build/compare.json $build/notes.md docs
echo "wrote docs/performance.md" >&2
