# real: files made by other people's programs
configure dev
cmake --build build/dev --target typescout_cli
tests/real/run.sh build/dev

# The modules, installed: raw pictures and PDF documents without and with them. No other user may write
# to a folder that modules are loaded from.
need ghostscript libtiff-tools qpdf
cmake --build build/dev
bash tests/modules/make_real.sh build/dev/real-modules
installed=$(mktemp -d)
trap 'rm -rf "$installed"' EXIT
(umask 022 && cmake --install build/dev --prefix "$installed" >build/install.log)
requested=(0x0305 0x0503 0x0519 0x0535)
for program in "$PWD/build/dev" "$installed/bin"; do
  for filter in "${requested[@]}"; do
    (cd build/dev/real-modules && "$program/typescout" -k --requested "$filter" --format '{all}' -- *) \
      >"$installed/${program##*/}-$filter"
  done
done
paste -d '|' <(ls build/dev/real-modules) "${requested[@]/#/$installed/dev-}" \
  "${requested[@]/#/$installed/bin-}" | diff <(grep -v '^#' tests/modules/real.txt) -
"$installed/bin/typescout" --modules | tee build/modules.log
[ "$(grep -cE ': version [0-9.]+, (LibRaw|qpdf) [0-9]' build/modules.log)" -eq 2 ]
