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
python3 tests/modules/truth_test.py build/dev/libtypescout.so \
  "$(find "$installed" -name libtypescout.so.1)" build/dev/real-modules
"$installed/bin/typescout" --modules | tee build/modules.log
[ "$(grep -cE ': version [0-9.]+, (LibRaw|qpdf) [0-9]' build/modules.log)" -eq 2 ]
