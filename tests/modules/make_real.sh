#!/usr/bin/env bash
# make_real.sh FOLDER: raw pictures and PDF documents by other people's programs.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
mkdir -p "$1"
cd "$1"

# A DNG, tag by tag (libtiff): photometric interpretation CFA, pattern, DNGVersion, UniqueCameraModel.
head -c 8192 /dev/zero >pixels
raw2tiff -c none -w 64 -l 64 -d short pixels by-libtiff.dng
for tag in '262 32803' '33421 2 2' '33422 4 0 1 1 2' '50706 1 4 0 0'; do
  # shellcheck disable=SC2086  # words
  tiffset -s $tag by-libtiff.dng
done
tiffset -s 271 Acme by-libtiff.dng
tiffset -s 50708 'Acme One' by-libtiff.dng
raw2tiff -c none -w 64 -l 64 -d short pixels grey.tif
rm pixels
python3 "$here/raw_files.py" .

# Ghostscript writes what pdfmark says: the page's data of an Illustrator document.
page='100 100 200 200 rectfill showpage'
data='[/_objdef {data} /type /stream /OBJ pdfmark
  [{data} (%%Creator: Adobe Illustrator\(R\) 8.0\n%%BoundingBox: 0 0 9 9\n) /PUT pdfmark
  [/_objdef {private} /type /dict /OBJ pdfmark
  [{private} << /AIMetaData {data} /ContainerVersion 11 >> /PUT pdfmark
  [{ThisPage} << /PieceInfo << /Illustrator << /Private {private} >> >> >> /PUT pdfmark'
gs -q -dNOPAUSE -dBATCH -sDEVICE=pdfwrite -sOutputFile=by-ghostscript.pdf -c "$page"
gs -q -dNOPAUSE -dBATCH -sDEVICE=pdfwrite -sOutputFile=illustrator.pdf -c "$data $page"
for name in by-ghostscript illustrator; do
  qpdf --object-streams=generate $name.pdf $name-packed.pdf
  qpdf --linearize $name.pdf $name-linear.pdf
  qpdf --encrypt '' owner 256 -- --object-streams=generate $name.pdf $name-encrypted.pdf
done
qpdf --stream-data=uncompress --object-streams=disable illustrator.pdf illustrator-readable.pdf
qpdf --encrypt user owner 256 -- illustrator.pdf illustrator-with-password.pdf
head -c 1000 illustrator.pdf >illustrator-cut.pdf
printf '%%!PS\n%s\n' "$page" | ps2pdf - by-ps2pdf.pdf
gs -q -dNOPAUSE -dBATCH -sDEVICE=pdfwrite -dCompatibilityLevel=1.3 -sOutputFile=old.pdf -c "$page"
