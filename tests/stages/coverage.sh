# coverage: lines and outcomes of conditions that no test reaches
need clang llvm
build=$PWD/build/coverage
configure coverage
cmake --build "$build"
rm -f "$build"/*.profraw
LLVM_PROFILE_FILE="$build/%m.profraw" each_test "$build" env
llvm-profdata merge -o "$build/reached.profdata" "$build"/*.profraw
llvm-cov export "$build/tests/typescout_unit_tests" -object "$build/libtypescout.so" \
  -instr-profile="$build/reached.profdata" 2>/dev/null | tools/coverage.py .
