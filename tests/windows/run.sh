#!/usr/bin/env bash
# Builds the module for Windows and passes its tests under Wine. What is needed and missing is
# installed (Debian, as root or with sudo).
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
. .ci/packages.sh

need clang cmake g++-mingw-w64-x86-64-posix googletest libcli11-dev lld llvm ninja-build \
  nlohmann-json3-dev wine64
build=build/windows
mkdir -p build
cmake --preset windows >build/windows.log
cmake --build "$build"
# Before the tests, which would otherwise all find the folder half made.
cmake/wine.sh "$PWD/$build/wine" wineboot --init >build/wine.log 2>&1
ctest --test-dir "$build" --output-on-failure --timeout 300
