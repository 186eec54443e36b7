#!/usr/bin/env bash
# Makes the real files: tests/real/make.sh FOLDER
#
# FOLDER is made when it is missing. What is drawn, sung and written is small and the same every
# time; the files are what Debian's own programs (packages.txt) make of it, by the commands of
# files.txt. Silent when all goes well; a program that fails ends the script with what it said.
set -Eeuo pipefail

[ $# -eq 1 ] || { echo "usage: make.sh FOLDER" >&2; exit 64; }
table=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)/files.txt
export PATH=/usr/bin:/bin LC_ALL=C
mkdir -p "$1"
folder=$(cd "$1" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
mkdir made  # relative, because some programs write the path into the file
exec 3>&2 2>said
complain() {
  echo "make.sh: line $1: $2: status $3"
  tail -n 20 "$work/said"
} >&3
trap 'complain "$LINENO" "$BASH_COMMAND" "$?"' ERR

# The originals: a black and white, a greyscale and a colour picture, one that does not compress,
# points, a graph, a tune, a film, a letter, a table, a page and a program.
pgmramp -ellipse 128 128 | pgmtopbm -threshold >shape.pbm
pgmramp -ellipse 96 64 >grey.pgm
pgmramp -lr 96 64 >red.pgm
pgmramp -tb 96 64 >green.pgm
rgb3toppm red.pgm green.pgm grey.pgm >colour.ppm
convert colour.ppm +dither -colors 32 few.ppm
pgmnoise -randomseed=1 320 240 >noise.pgm
potrace --backend svg --output shape.svg shape.pbm
seq 1 12 | awk '{ print $1, $1 * $1 % 7 }' >points
echo 'graph { one -- two -- three -- one }' >graph
printf '%s\n' X:1 'T:A scale' M:4/4 L:1/4 K:C 'CDEF|GABc|' >tune.abc
for _ in 1 2 3 4 5 6 7 8 9 10; do cat colour.ppm; done |
  ppmtoy4m -v 0 -F 25:1 -S 420mpeg2 >film.y4m
printf 'A page\n\nOf one paragraph, and a caf\303\251.\n' >letter.txt
printf 'one,two\n1,2\n3,4\n' >table.csv
printf '<!DOCTYPE html>\n<title>\343\203\232\343\203\274\343\202\270</title>\n' >page.html
printf '.globl _start\n_start: ret\n' | as -o start.o -

# What the table's commands use.
# shellcheck disable=SC2034
plot="plot 'points' with lines title 'points'" long=$(seq -s ' ' 1 60)
lines() { for number in 1 2 3 4 5 6 7 8; do printf "Line $number: %s$2" "$1"; done; }
ghostscript() {
  gs -q -dBATCH -dNOPAUSE -dSAFER -r60 "-sDEVICE=$1" -sOutputFile=- made/by-netpbm.ps
}
tone() { sox -D -R -n -r 44100 -c 1 "$@" synth 0.2 sine 440 vol 0.5; }
office() { # FILE FORMAT
  soffice "-env:UserInstallation=file://$work/office" --headless --convert-to "$2" --outdir . "$1" >>said
  cat "${1%.*}.${2%%:*}"
}

while read -r _ name command; do
  made=made/$name
  if [[ "$command" == *@* ]]; then
    eval "${command//@/$made}" >>said
  else
    eval "$command" >"$made"
  fi
  [ -s "$made" ]
done < <(grep ^0x "$table")
mv made/* "$folder"
