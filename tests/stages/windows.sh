# windows: cross-build with mingw-w64, run the tests under Wine
need clang g++-mingw-w64-x86-64-posix googletest lld llvm wine64
build=build/windows
configure windows
cmake --build "$build"
# Before the tests, which would otherwise all find the folder half made.
cmake/wine.sh "$PWD/$build/wine" wineboot --init >build/wine.log 2>&1
# Wine starts in a tenth of the time while a program is running: this one waits for a list.
rm -f "$build/list"
mkfifo "$build/list"
cmake/wine.sh "$PWD/$build/wine" "$build/typescout.exe" -f - <"$build/list" >build/wine.log 2>&1 &
exec 9>"$build/list"
ctest --preset windows --timeout 300

configure dev
cmake --build build/dev --target typescout_cli

# The documents that the tests wrote, by the system's own functions and others, have the same answers
# there and here, and so have the real files, when there are any.
rm -rf "$build/documents/real"
[ ! -d build/dev/real-files ] || cp -r build/dev/real-files "$build/documents/real"
ask=(-rk --format '{path} {id} {all}' "$build/documents")
cmake/wine.sh "$PWD/$build/wine" "$build/typescout.exe" "${ask[@]}" | tr -d '\r' | tr '\134' / |
  LC_ALL=C sort >"$build/answers.txt"
build/dev/typescout "${ask[@]}" | LC_ALL=C sort | diff "$build/answers.txt" -
for id in 0x0507 0x0545 0x0706 0x0801 0x0807 0x0814; do # each kind of document is among them
  grep -q " $id" "$build/answers.txt"
done
echo "$(wc -l <"$build/answers.txt") files answered alike"

# The program opens a file to see what it is and whether it is empty; the module opens it once.
mkdir -p "$build/opens"
printf 'no format\1' >"$build/opens/ordinary"
opens=$(WINEDEBUG=+file cmake/wine.sh "$PWD/$build/wine" "$build/typescout.exe" "$build/opens/ordinary" 2>&1 |
  grep -ac 'CreateFileW .*ordinary"')
echo "the program and the module opened the file $opens times"
[ "$opens" = 3 ]
