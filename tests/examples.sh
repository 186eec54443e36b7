#!/usr/bin/env bash
# examples.sh FOLDER: runs the examples that were built there; they print what
# examples/transcript.txt says. A line `$ NAME ARGUMENT...` there is a run in a folder with the
# picture holiday.gif.
set -euo pipefail
folder=$(cd "$1" && pwd)
transcript=$(cd "$(dirname "${BASH_SOURCE[0]}")/../examples" && pwd)/transcript.txt
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
printf 'GIF89a\1\0\1\0\0\0\0,\0\0\0\0\1\0\1\0\0\2\2D\1\0;' >holiday.gif
cp holiday.gif été.gif

sed -n 's/^\$ //p' "$transcript" | while read -r name arguments; do
  echo "\$ $name${arguments:+ $arguments}"
  eval "'$folder/$name' $arguments"
done | diff "$transcript" -
