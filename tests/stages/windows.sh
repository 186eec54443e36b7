# windows: cross-build with mingw-w64, run the tests under Wine
need clang g++-mingw-w64-x86-64-posix googletest lld llvm wine64
build=build/windows
configure windows
cmake --build "$build"
# Before the tests, which would otherwise all find the folder half made.
cmake/wine.sh "$PWD/$build/wine" wineboot --init >build/wine.log 2>&1
ctest --preset windows --timeout 300

configure dev
cmake --build build/dev --target typescout_answers typescout_write_damaged

# The documents that the tests wrote, by the system's own functions and others, have the same answers
# there and here, and so have the real files, when there are any. No document is refused.
rm -rf "$build/documents/real"
[ ! -d build/dev/real-files ] || cp -r build/dev/real-files "$build/documents/real"
cmake/wine.sh "$PWD/$build/wine" "$build/typescout_answers.exe" "$build/documents" opened |
  tr -d '\r' >"$build/answers.txt"
build/dev/tests/typescout_answers "$build/documents" opened | diff "$build/answers.txt" -
for id in 0x0507 0x0545 0x0706 0x0801 0x0807 0x0814; do # each kind of document is among them
  grep -q " $id" "$build/answers.txt"
done
echo "$(wc -l <"$build/answers.txt") files answered alike"

# What the system's reader makes of damaged documents, and what is made of them here.
tests/windows/damage_table.py build/dev/tests/typescout_write_damaged "$build/damaged" \
  docs/windows.md cmake/wine.sh "$PWD/$build/wine" "$build/typescout_system_reader.exe"

# Each of the eight questions that typescout_answers asks about a file opens it once.
mkdir -p "$build/opens"
printf 'no format\1' >"$build/opens/ordinary"
opens=$(WINEDEBUG=+file cmake/wine.sh "$PWD/$build/wine" "$build/typescout_answers.exe" "$build/opens" 2>&1 |
  grep -ac 'CreateFileW .*ordinary"')
echo "8 questions about a file opened it $opens times"
[ "$opens" = 8 ]
