#!/usr/bin/env bash
# Asks the program about the real files: tests/real/run.sh BUILD_FOLDER
#
# Makes the files (make.sh) with Debian's programs (packages.txt, installed when missing), lets
# BUILD_FOLDER/typescout name them all and compares with files.txt, in both directions. Each
# difference is a line of its own; the exit status is then 1. The files stay in
# BUILD_FOLDER/real-files and are made again when make.sh or the table has changed.
set -euo pipefail

[ $# -eq 1 ] || { echo "usage: run.sh BUILD_FOLDER" >&2; exit 64; }
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$here/../../tools/need.sh"
program=$(cd "$1" && pwd)/typescout
files=${program%/*}/real-files
[ -x "$program" ] || { echo "run.sh: there is no $program" >&2; exit 66; }

if ! cat "$here"/{make.sh,files.txt} | cmp -s - "$files.made-by"; then
  mapfile -t packages < <(grep -v '^#' "$here/packages.txt")
  need "${packages[@]}"
  rm -rf "$files" "$files.made-by"
  bash "$here/make.sh" "$files"
  cat "$here"/{make.sh,files.txt} >"$files.made-by"
fi

# "name identifier" of every file of the table, and of every line that the program prints.
table=$(awk '/^0x/ { print $2, $1 }' "$here/files.txt" | sort)
said=$(cd "$files" && "$program" --format '{path} {id}' -- * | sort)

differences=$(join -a 1 -a 2 -e nothing -o 0,1.2,2.2 <(echo "$table") <(echo "$said") |
  awk '$2 != $3 { print $1 ": the table says " $2 ", the program " $3 }')
if [ -n "$differences" ]; then
  echo "$differences"
  exit 1
fi
echo "$(wc -l <<<"$table") real files meet the table"
