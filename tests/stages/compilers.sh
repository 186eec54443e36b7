# compilers: the oldest compilers, another standard library and a 32-bit system
need clang-14 g++-11 g++-11-multilib googletest libc++-14-dev libc++abi-14-dev
common=(-G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-O1
  -DTYPESCOUT_GTEST_SOURCES=/usr/src/googletest -DTYPESCOUT_CAMERA_RAW=OFF
  -DTYPESCOUT_PDF_IMPORT=OFF)
targets=(typescout_unit_tests typescout_module_tests typescout_contract_native typescout_cli)

# try NAME COMPILER FLAGS [ARGUMENT...]: builds, runs the tests of the library and the program once.
try() {
  echo "-- $1"
  local build=build/compilers/$1
  cmake -S . -B "$build" "${common[@]}" -DCMAKE_CXX_COMPILER="$2" -DCMAKE_CXX_FLAGS="$3" >"$build.log"
  cmake --build "$build" --target "${targets[@]}"
  local program
  for program in unit_tests module_tests contract_native; do
    "$build/tests/typescout_$program" --gtest_brief=1 "${@:4}"
  done
  "$build/typescout" .clang-format
}

mkdir -p build/compilers
try gcc-11 g++-11 ''
try clang-libc++ clang++-14 -stdlib=libc++
# A PDF module's record has 64-bit pointers; without it the row answers as without a module.
try 32-bit g++-11 -m32 --gtest_filter='-IllustratorPdf.*'
