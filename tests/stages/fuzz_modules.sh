# fuzz_modules: the same for the two modules; not in CI, since a fault of LibRaw or qpdf is not ours
targets=(camera_raw pdf_import)
# shellcheck source=tests/stages/fuzz.sh
. tests/stages/fuzz.sh
