#!/usr/bin/env bash
# Builds the module for Windows and passes its tests under Wine. What is needed and missing is
# installed (Debian, as root or with sudo).
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
. .ci/packages.sh

need clang cmake g++ g++-mingw-w64-x86-64-posix googletest libcli11-dev libgtest-dev lld llvm \
  ninja-build nlohmann-json3-dev wine64
build=build/windows
mkdir -p build
cmake --preset windows >build/windows.log
cmake --build "$build"
# Before the tests, which would otherwise all find the folder half made.
cmake/wine.sh "$PWD/$build/wine" wineboot --init >build/wine.log 2>&1
ctest --test-dir "$build" --output-on-failure --timeout 300

# The documents that the tests wrote by the system's own functions have the same answers there and
# here.
documents=$build/documents
cmake/wine.sh "$PWD/$build/wine" "$build/typescout_answers.exe" "$documents" |
  tr -d '\r' >"$build/answers.txt"
cmake --preset dev >build/dev.log
cmake --build build/dev --target typescout_answers
build/dev/tests/typescout_answers "$documents" | diff "$build/answers.txt" -
for id in 0x0507 0x0545 0x0706 0x0801 0x0807 0x0814; do # each kind of document is among them
  grep -q " $id" "$build/answers.txt"
done
echo "$(wc -l <"$build/answers.txt") documents answered alike"
