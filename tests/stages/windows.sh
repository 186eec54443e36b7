# windows: cross-build with mingw-w64, run the tests under Wine
need clang g++-mingw-w64-x86-64-posix googletest lld llvm wine64
build=build/windows
configure windows
cmake --build "$build"
# Before the tests, which would otherwise all find the folder half made.
cmake/wine.sh "$PWD/$build/wine" wineboot --init >build/wine.log 2>&1
ctest --preset windows --timeout 300

# The documents that the tests wrote by the system's own functions have the same answers there and
# here.
documents=$build/documents
cmake/wine.sh "$PWD/$build/wine" "$build/typescout_answers.exe" "$documents" |
  tr -d '\r' >"$build/answers.txt"
configure dev
cmake --build build/dev --target typescout_answers
build/dev/tests/typescout_answers "$documents" | diff "$build/answers.txt" -
for id in 0x0507 0x0545 0x0706 0x0801 0x0807 0x0814; do # each kind of document is among them
  grep -q " $id" "$build/answers.txt"
done
echo "$(wc -l <"$build/answers.txt") documents answered alike"

# Each of the eight questions that typescout_answers asks about a file opens it once.
mkdir -p "$build/opens"
printf 'no format\1' >"$build/opens/ordinary"
opens=$(WINEDEBUG=+file cmake/wine.sh "$PWD/$build/wine" "$build/typescout_answers.exe" "$build/opens" 2>&1 |
  grep -ac 'CreateFileW .*ordinary"')
echo "8 questions about a file opened it $opens times"
[ "$opens" = 8 ]
