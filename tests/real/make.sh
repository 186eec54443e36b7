#!/usr/bin/env bash
# Makes the real files: tests/real/make.sh FOLDER
#
# FOLDER is made when it is missing. What is drawn, sung and written is small and the same every
# time; the files are what Debian's own programs (packages.txt) make of it. Silent when all goes
# well; a program that fails ends the script with what it said.
set -Eeuo pipefail

[ $# -eq 1 ] || { echo "usage: make.sh FOLDER" >&2; exit 64; }
export PATH=/usr/bin:/bin LC_ALL=C
mkdir -p "$1"
folder=$(cd "$1" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
# Relative, because some programs write the path into the file.
out=made
mkdir "$out"
exec 3>&2 2>said
complain() {
  echo "make.sh: line $1: $2: status $3"
  tail -n 20 "$work/said"
} >&3
trap 'complain "$LINENO" "$BASH_COMMAND" "$?"' ERR

# ---- Pictures ----------------------------------------------------------------------------------

# The models: an outline, a greyscale and a colour picture, and one that does not compress.
cat >outline.pbm <<'PBM'
P1 16 16
0000000000000000
0000001111000000
0000110000110000
0001000000001000
0010000000000100
0010011001100100
0100011001100010
0100000000000010
0100000000000010
0101000000001010
0010110000110100
0010001111000100
0001000000001000
0000110000110000
0000001111000000
0000000000000000
PBM
pnmenlarge 8 outline.pbm >shape.pbm
pgmramp -ellipse 96 64 >grey.pgm
pgmramp -lr 96 64 >red.pgm
pgmramp -tb 96 64 >green.pgm
rgb3toppm red.pgm green.pgm grey.pgm >colour.ppm
convert colour.ppm +dither -colors 32 few.ppm
pgmnoise -randomseed=1 320 240 >noise.pgm
pgmnoise -randomseed=2 320 240 >noise2.pgm

# GIF. The noisy ones go on for more than 50,000 bytes before their first picture ends.
pamtogif few.ppm >"$out/still.gif"
convert few.ppm "gif87:$out/still-87a.gif"
convert few.ppm -interlace GIF -set comment 'a comment' "$out/interlaced.gif"
pamtogif noise.pgm >"$out/still-large.gif"
convert -delay 10 -loop 0 few.ppm \( few.ppm -negate \) \( few.ppm -flip \) "$out/animated.gif"
convert -delay 10 -loop 3 noise.pgm noise2.pgm "$out/animated-large.gif"

# JPEG, by two programs; and a frame that uses arithmetic coding.
cjpeg -quality 80 colour.ppm >"$out/baseline.jpg"
cjpeg -quality 80 -progressive colour.ppm >"$out/progressive.jpg"
cjpeg -quality 80 grey.pgm >"$out/grey.jpg"
cjpeg -quality 80 -restart 1 colour.ppm >"$out/restart.jpg"
cjpeg -quality 80 -arithmetic colour.ppm >"$out/arithmetic.jpg"
convert colour.ppm -set comment 'a comment' -density 300 "$out/comment.jpg"
convert colour.ppm -colorspace CMYK "$out/cmyk.jpg"

# TIFF.
convert colour.ppm -define tiff:endian=lsb "$out/little-endian.tif"
convert colour.ppm -define tiff:endian=msb "$out/big-endian.tif"
pamtotiff -g4 shape.pbm >"$out/fax.tif"
convert few.ppm -compress LZW -define tiff:endian=msb "$out/lzw-big-endian.tif"
convert colour.ppm "tiff64:$out/bigtiff.tif"

# Bitmaps.
ppmtobmp -windows few.ppm >"$out/windows.bmp"
ppmtobmp -os2 few.ppm >"$out/os2.bmp"
convert colour.ppm "bmp2:$out/core-header.bmp"
convert colour.ppm "bmp3:$out/info-header.bmp"
convert colour.ppm -alpha set "bmp:$out/v5-header.bmp"

# PCX and TGA.
ppmtopcx few.ppm >"$out/palette.pcx"
ppmtopcx -24bit colour.ppm >"$out/truecolour.pcx"
convert shape.pbm "pcx:$out/mono.pcx"
convert few.ppm "dcx:$out/pages.dcx"
ppmtotga -rgb -norle colour.ppm >"$out/rgb.tga"
ppmtotga -rgb colour.ppm >"$out/rgb-rle.tga"
ppmtotga -cmap -norle few.ppm >"$out/mapped.tga"
ppmtotga -mono grey.pgm >"$out/grey-rle.tga"
ppmtotga -mono -norle grey.pgm >"$out/grey.tga"
convert colour.ppm "tga:$out/by-imagemagick.tga"

# PNG, WebP, XPM.
pnmtopng colour.ppm >"$out/colour.png"
pnmtopng -interlace -transparent =white shape.pbm >"$out/interlaced.png"
convert few.ppm few.ppm "mng:$out/frames.mng"
convert colour.ppm "$out/lossy.webp"
convert colour.ppm -define webp:lossless=true "$out/lossless.webp"
ppmtoxpm few.ppm >"$out/by-netpbm.xpm"
convert few.ppm "$out/by-imagemagick.xpm"

# Netpbm, all seven.
cp shape.pbm "$out/raw.pbm"
cp grey.pgm "$out/raw.pgm"
cp colour.ppm "$out/raw.ppm"
pnmtoplainpnm shape.pbm >"$out/plain.pbm"
pnmtoplainpnm grey.pgm >"$out/plain.pgm"
pnmtoplainpnm colour.ppm >"$out/plain.ppm"
pamtopam <colour.ppm >"$out/raw.pam"

# Photoshop, JPEG 2000.
convert colour.ppm "$out/flat.psd"
convert colour.ppm "$out/large-document.psb"
convert colour.ppm "$out/boxed.jp2"
convert colour.ppm "j2k:$out/bare.j2k"

# Icons and cursors.
ppmtowinicon -output "$out/by-netpbm.ico" few.ppm
convert few.ppm -resize 32x32! "ico:$out/by-imagemagick.ico"
pnmtopng -transparent =white shape.pbm >shape.png
icotool --create --icon --output="$out/by-icotool.ico" shape.png
icotool --create --cursor --hotspot-x=3 --hotspot-y=4 --output="$out/by-icotool.cur" shape.png
convert few.ppm -resize 32x32! "cur:$out/by-imagemagick.cur"

# Of the Macintosh, the Atari and the Amiga.
pbmtomacp shape.pbm >"$out/shape.macp"
pbmtomacp -norle shape.pbm >"$out/shape-literal.macp"
ppmtopict few.ppm >"$out/few.pict"
convert colour.ppm "pict:$out/by-imagemagick.pict"
pbmtogem shape.pbm >"$out/shape.img"
ppmtoilbm few.ppm >"$out/few.ilbm"

# Pictures of formats that nobody asks about.
pbmtoxbm shape.pbm >"$out/shape.xbm"
pnmtosgi colour.ppm >"$out/colour.sgi"
pnmtorast colour.ppm >"$out/colour.ras"
pbmtowbmp shape.pbm >"$out/shape.wbmp"
ppmtoacad few.ppm >"$out/few.sld"
ppmtosixel few.ppm >"$out/few.sixel"

# ---- PostScript, PDF and printers ----------------------------------------------------------------

cat >page.ps <<'PS'
%!PS-Adobe-3.0
%%BoundingBox: 0 0 200 100
%%EndComments
/Helvetica findfont 24 scalefont setfont
10 40 moveto (An ordinary page) show
5 5 190 90 rectstroke
showpage
%%EOF
PS
ghost() { gs -q -dBATCH -dNOPAUSE -dSAFER -sDEVICE="$1" -sOutputFile="$2" "${@:3}" page.ps; }
ghost ps2write "$out/job.ps"
ghost eps2write "$out/encapsulated.eps"
ghost pdfwrite "$out/page.pdf"
ghost psdrgb "$out/by-ghostscript.psd" -r36
ghost xcf "$out/layer.xcf" -r36
ghost pcx256 "$out/by-ghostscript.pcx" -r36
ghost tiffg4 "$out/by-ghostscript.tif"
ghost pxlmono "$out/laser.pxl"
ghost ljet4 "$out/laser.pcl" -r75
ghost epson "$out/dots.prn" -r60
pnmtops -quiet few.ppm >"$out/by-netpbm.eps"
pnmtops -quiet -setpage few.ppm >"$out/by-netpbm.ps"
pnmtopclxl few.ppm >"$out/by-netpbm.pxl"
pbmtolj -resolution 75 shape.pbm >"$out/by-netpbm.pcl"
potrace --backend eps --output "$out/by-potrace.eps" shape.pbm
epstool --quiet --add-tiff4-preview "$out/encapsulated.eps" "$out/dos-tiff-preview.eps" >said-too
epstool --quiet --add-interchange-preview --device pgmraw "$out/by-potrace.eps" \
  "$out/interchange-preview.eps" >said-too
potrace --backend ps --output "$out/by-potrace.ps" shape.pbm
potrace --backend pdf --output "$out/by-potrace.pdf" shape.pbm
pstoedit -q -f ps2ai "$out/by-potrace.eps" "$out/by-ghostscript.ai" >said-too

# ---- Drawings ------------------------------------------------------------------------------------

seq 1 12 | awk '{ print $1, $1 * $1 % 7 }' >points
draw() { graph -T "$1" "${@:3}" points >"$out/$2"; }
draw ai by-graph.ai
draw ps by-graph.ps
draw hpgl by-graph.hpgl
draw pcl by-graph.pcl
draw cgm by-graph.cgm
draw svg by-graph.svg
draw fig by-graph.fig
draw pnm by-graph.pnm
draw gif by-graph.gif
CGM_ENCODING=clear_text draw cgm clear-text.cgm
HPGL_VERSION=1 draw hpgl version-1.hpgl
plot() {
  gnuplot -e "set terminal $1; set output '$out/$2'; plot 'points' with lines title 'points'"
}
plot 'postscript' by-gnuplot.ps
plot 'postscript eps' by-gnuplot.eps
plot hpgl by-gnuplot.hpgl
plot pcl5 by-gnuplot.pcl
plot dxf by-gnuplot.dxf
plot cgm by-gnuplot.cgm
plot emf by-gnuplot.emf
plot svg by-gnuplot.svg
plot pdfcairo by-gnuplot.pdf
for format in dxf dxf_s emf hpgl; do
  pstoedit -q -f "$format" "$out/by-potrace.eps" "$out/by-pstoedit.$format"
done
potrace --backend dxf --output "$out/by-potrace.dxf" shape.pbm
potrace --backend svg --output "$out/by-potrace.svg" shape.pbm
pamtosvg shape.pbm >"$out/by-netpbm.svg"
echo 'graph { one -- two -- three -- one }' >graph.dot
for format in svg ps2 pdf fig vrml; do
  dot "-T$format" -o "graph.$format" graph.dot
  cp "graph.$format" "$out"
done

# ---- Sound and video -----------------------------------------------------------------------------

tone() { sox -D -R -n -r "${rate:-44100}" -c 1 "$@" synth 0.2 sine 440 vol 0.5; }
tone -b 16 "$out/tone.wav"
tone -b 16 "$out/tone.aiff"
tone -b 16 "$out/tone.aifc"
rate=8000 tone -e unsigned-integer -b 8 "$out/tone.voc"
rate=8000 tone -b 8 "$out/tone.8svx"
tone -b 16 "$out/linear.au"
tone -b 16 -t au -L "$out/little-endian.au"
rate=8000 tone -e mu-law -t au "$out/mu-law.au"
rate=8000 tone -b 8 -t au "$out/eight-bit.au"
rate=8000 tone -e a-law -t au "$out/a-law.au"
tone -b 24 -t au "$out/24-bit.au"
tone -b 16 "$out/tone.flac"
tone "$out/tone.ogg"
lame --quiet "$out/tone.wav" "$out/plain.mp3"
lame --quiet --add-id3v2 --tt 'A tone' "$out/tone.wav" "$out/tagged.mp3"
rate=8000 tone -b 16 low.wav
lame --quiet low.wav "$out/mpeg-2.5.mp3"
mp2enc -v 0 -b 96 -o "$out/layer2.mp2" <"$out/tone.wav"
cat >tune.abc <<'ABC'
X:1
T:A scale
M:4/4
L:1/4
K:C
CDEF|GABc|
ABC
abc2midi tune.abc -o "$out/tune.mid" -silent >said-too

for _ in 1 2 3 4 5 6 7 8 9 10; do cat colour.ppm; done |
  ppmtoy4m -v 0 -F 25:1 -S 420mpeg2 >film.y4m
mpeg2enc -v 0 -f 1 -o "$out/video.m1v" <film.y4m
mpeg2enc -v 0 -f 3 -b 500 -o "$out/video.m2v" <film.y4m
mplex -v 0 -f 0 -o "$out/program.mpg" "$out/video.m1v" "$out/layer2.mp2"
mplex -v 0 -f 3 -o "$out/program-2.mpg" "$out/video.m2v" "$out/layer2.mp2"
yuv2lav -v 0 -f a -o "$out/film.avi" <film.y4m >said-too

# ---- Documents and text --------------------------------------------------------------------------

printf 'A page\n\nOf one paragraph, and a caf\303\251.\n' >letter.txt
printf 'one,two\n1,2\n3,4\n' >table.csv
office() {
  soffice "-env:UserInstallation=file://$work/office" --headless --convert-to "$1" \
    --outdir "$out" "$2" >>said
  # It says nothing by its exit status.
  [ -s "$out/${2%.*}.${1%%:*}" ]
}
office 'doc:MS Word 97' letter.txt
office rtf letter.txt
office odt letter.txt
office 'html:HTML (StarWriter)' letter.txt
office 'xls:MS Excel 97' table.csv
cp "$out/by-potrace.svg" shape.svg
office wmf shape.svg
office emf shape.svg

printf 'Name\tValue\ns64\ts255\nnames\tName\none\t1\n' >names.idt
msibuild "$out/package.msi" -s 'A package' 'An author' ';1033' \
  '{00000000-0000-0000-0000-000000000001}'
cp "$out/package.msi" "$out/package.pub"
mkdir parts
head -c 4096 /dev/zero >parts/Pictures
gsf createole "$out/no-document.ole" parts/Pictures

# The same archive under other names.
cp "$out/letter.odt" "$out/archive.zip"
cp "$out/letter.odt" "$out/drawing.vxr"
cp "$out/letter.odt" "$out/technical.zrs"
cp "$out/letter.odt" "$out/symbols.TSL"

# Executables.
printf '.globl _start\n_start: ret\n' | as -o start.o -
ld -m i386pep --no-insert-timestamp -o "$out/program.exe" start.o
ld -o "$out/program.elf" start.o

lines() {
  for number in 1 2 3 4 5 6 7 8; do printf "Line $number: %s$2" "$1"; done
}
lines 'plain words' '\n' >"$out/unix.txt"
lines 'plain words' '\r\n' >"$out/dos.txt"
lines 'plain words' '\r' >"$out/mac.txt"
{ lines 'plain words' '\r\n'; printf '\032'; } >"$out/dos-end-of-file.txt"
lines $'caf\351' '\r\n' >"$out/latin-1.txt"
lines $'Stra\337e \341' '\r\n' >"$out/latin-1-low.txt"
lines $'caf\303\251' '\n' >"$out/utf-8-two-bytes.txt"
lines $'ten \342\202\254' '\n' >"$out/utf-8-three-bytes.txt"
lines $'caf\202' '\r\n' >"$out/code-page-437.txt"
{ printf '\377\376'; lines 'words' '\n' | iconv -t UTF-16LE; } >"$out/utf-16-little-endian.txt"
{ printf '\376\377'; lines 'words' '\n' | iconv -t UTF-16BE; } >"$out/utf-16-big-endian.txt"
long=$(seq -s ' ' 1 60)
lines "$long" '\r\n' >"$out/dos-long-lines.txt"
lines "$long" '\n' >"$out/unix-long-lines.txt"
lines 'words' '\n' | gzip -n >"$out/unix.txt.gz"
web_page() {
  printf '<!DOCTYPE html>\n<html><head><title>%s</title></head>\n<body><p>%s</p></body></html>\n' "$@"
}
web_page 'A page' 'Of one paragraph.' >"$out/unix.html"
web_page 'A page' $'Of one paragraph, for 3 \342\202\254.' >"$out/euro.html"
web_page $'\343\203\232\343\203\274\343\202\270' '' | iconv -f UTF-8 -t ISO-2022-JP \
  >"$out/iso-2022-jp.html"
echo 'ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIAABAgMEBQYHCAkKCwwNDg8QERITFBUWFxgZGhscHR4f someone@here' \
  >"$out/id_ed25519.pub"

[ -z "$(find "$out" -empty)" ]
mv "$out"/* "$folder"
