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
mkdir made  # relative, because some programs write the path into the file
exec 3>&2 2>said
complain() {
  echo "make.sh: line $1: $2: status $3"
  tail -n 20 "$work/said"
} >&3
trap 'complain "$LINENO" "$BASH_COMMAND" "$?"' ERR

# ---- Pictures ----------------------------------------------------------------------------------

# The originals: a black and white, a greyscale and a colour picture, and one that does not compress.
pgmramp -ellipse 128 128 | pgmtopbm -threshold >shape.pbm
pgmramp -ellipse 96 64 >grey.pgm
pgmramp -lr 96 64 >red.pgm
pgmramp -tb 96 64 >green.pgm
rgb3toppm red.pgm green.pgm grey.pgm >colour.ppm
convert colour.ppm +dither -colors 32 few.ppm
pgmnoise -randomseed=1 320 240 >noise.pgm

# ImageMagick goes by the extension, or by the format in front of the name.
for file in bmp2:made/core-header.bmp bmp3:made/info-header.bmp tiff64:made/bigtiff.tif \
  tga:made/by-imagemagick.tga made/lossy.webp made/flat.psd made/large-document.psb \
  made/boxed.jp2 j2k:made/bare.j2k pict:made/by-imagemagick.pict; do
  convert colour.ppm "$file"
done
for file in gif87:made/still-87a.gif dcx:made/pages.dcx made/by-imagemagick.xpm \
  ico:made/by-imagemagick.ico cur:made/by-imagemagick.cur; do
  convert few.ppm -resize 32x32! "$file"
done
convert few.ppm -interlace GIF -set comment 'a comment' made/interlaced.gif
convert -delay 10 -loop 0 few.ppm \( +clone -negate \) \( +clone -flip \) made/animated.gif
convert -delay 10 -loop 3 noise.pgm \( +clone -flip \) made/animated-large.gif
convert colour.ppm -set comment 'a comment' -density 300 made/comment.jpg
convert colour.ppm -colorspace CMYK made/cmyk.jpg
convert colour.ppm -define tiff:endian=lsb made/little-endian.tif
convert colour.ppm -compress LZW -define tiff:endian=msb made/big-endian.tif
convert colour.ppm -alpha set bmp:made/v5-header.bmp
convert shape.pbm pcx:made/mono.pcx
convert few.ppm few.ppm mng:made/frames.mng
convert colour.ppm -define webp:lossless=true made/lossless.webp

for way in baseline progressive arithmetic grayscale; do
  cjpeg "-$way" colour.ppm >"made/$way.jpg"
done
cjpeg -restart 1 colour.ppm >made/restart.jpg

# By Netpbm. The noise goes on for more than 50,000 bytes.
pamtogif few.ppm >made/still.gif
pamtogif noise.pgm >made/still-large.gif
pamtotiff -g4 shape.pbm >made/fax.tif
ppmtobmp -windows few.ppm >made/windows.bmp
ppmtobmp -os2 few.ppm >made/os2.bmp
ppmtopcx few.ppm >made/palette.pcx
ppmtopcx -24bit colour.ppm >made/truecolour.pcx
ppmtotga -rgb -norle colour.ppm >made/rgb.tga
ppmtotga -cmap few.ppm >made/mapped-rle.tga
ppmtotga -mono grey.pgm >made/grey.tga
pnmtopng colour.ppm >made/colour.png
pnmtopng -interlace -transparent =white shape.pbm >made/interlaced.png
ppmtoxpm few.ppm >made/by-netpbm.xpm
for picture in shape.pbm grey.pgm colour.ppm; do
  cp "$picture" "made/raw.${picture#*.}"
  pnmtoplainpnm "$picture" >"made/plain.${picture#*.}"
done
pamtopam <colour.ppm >made/raw.pam
ppmtowinicon -output made/by-netpbm.ico few.ppm
pbmtomacp shape.pbm >made/shape.macp
pbmtomacp -norle shape.pbm >made/shape-literal.macp
ppmtopict few.ppm >made/few.pict
pbmtogem shape.pbm >made/shape.img
pamtosvg shape.pbm >made/by-netpbm.svg
pnmtops -quiet few.ppm >made/by-netpbm.eps
pnmtops -quiet -setpage few.ppm >made/by-netpbm.ps
pnmtopclxl few.ppm >made/by-netpbm.pxl
pbmtolj -resolution 75 shape.pbm >made/by-netpbm.pcl
# Formats that no row accepts.
for format in ppmtoilbm pnmtosgi pnmtorast ppmtoacad ppmtosixel; do
  "$format" few.ppm >"made/few.${format#*to}"
done
pbmtoxbm shape.pbm >made/shape.xbm
pbmtowbmp shape.pbm >made/shape.wbmp

icotool --create --icon --output=made/by-icotool.ico made/colour.png
icotool --create --cursor --hotspot-x=3 --hotspot-y=4 --output=made/by-icotool.cur made/colour.png

# ---- PostScript, PDF and printers ----------------------------------------------------------------

for device in ps2write:job.ps eps2write:encapsulated.eps pdfwrite:page.pdf xcf:layer.xcf \
  psdrgb:by-ghostscript.psd pcx256:by-ghostscript.pcx tiffg4:by-ghostscript.tif \
  pxlmono:laser.pxl ljet4:laser.pcl epson:dots.prn; do
  gs -q -dBATCH -dNOPAUSE -dSAFER -r60 "-sDEVICE=${device%:*}" "-sOutputFile=made/${device#*:}" \
    made/by-netpbm.ps
done
for format in eps ps pdf svg dxf; do
  potrace --backend "$format" --output "made/by-potrace.$format" shape.pbm
done
epstool --quiet --add-tiff4-preview made/encapsulated.eps made/dos-tiff-preview.eps >said-too
epstool --quiet --add-interchange-preview --device pgmraw made/by-potrace.eps \
  made/interchange-preview.eps >said-too
pstoedit -q -f ps2ai made/by-potrace.eps made/by-ghostscript.ai >said-too

# ---- Drawings ------------------------------------------------------------------------------------

seq 1 12 | awk '{ print $1, $1 * $1 % 7 }' >points
for format in ai ps hpgl pcl cgm svg fig pnm gif; do
  graph -T "$format" points >"made/by-graph.$format"
done
CGM_ENCODING=clear_text graph -T cgm points >made/clear-text.cgm
HPGL_VERSION=1 graph -T hpgl points >made/version-1.hpgl
for terminal in postscript:ps 'postscript eps:eps' hpgl:hpgl pcl5:pcl dxf:dxf cgm:cgm emf:emf \
  svg:svg pdfcairo:pdf; do
  gnuplot -e "set terminal ${terminal%:*}; set output 'made/by-gnuplot.${terminal#*:}'" \
    -e "plot 'points' with lines title 'points'"
done
for format in dxf dxf_s emf hpgl; do
  pstoedit -q -f "$format" made/by-potrace.eps "made/by-pstoedit.$format"
done
for format in svg ps2 pdf fig vrml; do
  echo 'graph { one -- two -- three -- one }' | dot "-T$format" -o "graph.$format"
  mv "graph.$format" made  # alone: VRML brings pictures
done

# ---- Sound and video -----------------------------------------------------------------------------

tone() { sox -D -R -n -r "${rate:-44100}" -c 1 "$@" synth 0.2 sine 440 vol 0.5; }
for format in wav aiff aifc au flac ogg; do
  tone -b 16 "made/tone.$format"
done
rate=8000
tone -b 16 low.wav
tone -e unsigned-integer -b 8 made/tone.voc
tone -b 8 made/tone.8svx
for encoding in '-L -b 16' '-b 8' '-b 24' '-e mu-law' '-e a-law'; do
  # shellcheck disable=SC2086  # options
  tone $encoding -t au "made/${encoding##* }.au"
done
lame --quiet made/tone.wav made/plain.mp3
lame --quiet --add-id3v2 --tt 'A tone' made/tone.wav made/tagged.mp3
lame --quiet low.wav made/mpeg-2.5.mp3
mp2enc -v 0 -b 96 -o made/layer2.mp2 <made/tone.wav
printf '%s\n' X:1 'T:A scale' M:4/4 L:1/4 K:C 'CDEF|GABc|' >tune.abc
abc2midi tune.abc -o made/tune.mid -silent >said-too

for _ in 1 2 3 4 5 6 7 8 9 10; do cat colour.ppm; done |
  ppmtoy4m -v 0 -F 25:1 -S 420mpeg2 >film.y4m
mpeg2enc -v 0 -f 1 -o made/video.m1v <film.y4m
mpeg2enc -v 0 -f 3 -b 500 -o made/video.m2v <film.y4m
mplex -v 0 -f 0 -o made/program.mpg made/video.m1v made/layer2.mp2
mplex -v 0 -f 3 -o made/program-2.mpg made/video.m2v made/layer2.mp2
yuv2lav -v 0 -f a -o made/film.avi <film.y4m >said-too

# ---- Documents and text --------------------------------------------------------------------------

office() { # FILE FORMAT...
  for format in "${@:2}"; do
    soffice "-env:UserInstallation=file://$work/office" --headless --convert-to "$format" \
      --outdir made "$1" >>said
    # It says nothing by its exit status.
    [ -s "made/${1%.*}.${format%%:*}" ]
  done
}
printf 'A page\n\nOf one paragraph, and a caf\303\251.\n' >letter.txt
printf 'one,two\n1,2\n3,4\n' >table.csv
cp made/by-potrace.svg shape.svg
office letter.txt 'doc:MS Word 97' rtf odt 'html:HTML (StarWriter)'
office table.csv 'xls:MS Excel 97'
office shape.svg wmf emf

printf 'Name\tValue\ns64\ts255\nnames\tName\none\t1\n' >names.idt
msibuild made/package.msi -s 'A package' 'An author' ';1033' \
  '{00000000-0000-0000-0000-000000000001}'
head -c 4096 /dev/zero >Pictures
gsf createole made/no-document.ole Pictures
# What goes by its extension alone.
cp made/package.msi made/package.pub
echo 'ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIAAB someone@here' >made/id_ed25519.pub
for name in archive.zip drawing.vxr technical.zrs symbols.TSL; do
  cp made/letter.odt "made/$name"
done

printf '.globl _start\n_start: ret\n' | as -o start.o -
ld -m i386pep --no-insert-timestamp -o made/program.exe start.o
ld -o made/program.elf start.o

lines() {
  for number in 1 2 3 4 5 6 7 8; do printf "Line $number: %s$2" "$1"; done
}
long=$(seq -s ' ' 1 60)
lines 'plain words' '\n' >made/unix.txt
lines 'plain words' '\r\n' >made/dos.txt
lines 'plain words' '\r' >made/mac.txt
lines $'caf\351' '\r\n' >made/latin-1.txt
lines $'ten \342\202\254' '\n' >made/utf-8.txt
lines "$long" '\r\n' >made/dos-long-lines.txt
lines "$long" '\n' >made/unix-long-lines.txt
{ printf '\377\376'; lines 'words' '\n' | iconv -t UTF-16LE; } >made/utf-16-little-endian.txt
{ printf '\376\377'; lines 'words' '\n' | iconv -t UTF-16BE; } >made/utf-16-big-endian.txt
lines 'words' '\n' | gzip -n >made/unix.txt.gz
printf '<!DOCTYPE html>\n<title>\343\203\232\343\203\274\343\202\270</title>\n' |
  iconv -f UTF-8 -t ISO-2022-JP >made/iso-2022-jp.html

[ -z "$(find made -empty)" ]
mv made/* "$folder"
