# coverage: lines and outcomes of conditions that no test reaches
need clang llvm
build=$PWD/build/coverage
configure coverage
cmake --build "$build"
rm -f "$build"/*.profraw
# The test that cuts every sample everywhere reaches nothing more and takes longest. Two tests watch
# the calls of the system, and the counting makes calls of its own.
LLVM_PROFILE_FILE="$build/%m.profraw" GTEST_FILTER='-*CutAnywhere' \
  ctest --preset coverage --exclude-regex '^(module_exports|fault_tests)$'
llvm-profdata merge -o "$build/reached.profdata" "$build"/*.profraw
objects=()
for program in libtypescout.so typescout tests/typescout_{catalogue_tests,contract_native}; do
  objects+=(-object "$build/$program")
done
llvm-cov export "$build/tests/typescout_unit_tests" "${objects[@]}" \
  -instr-profile="$build/reached.profdata" 2>/dev/null | tools/coverage.py . | tee "$build/report.txt"
