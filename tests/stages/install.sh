# install: packages, and programs that use the installed library in every way; the ABI is as recorded
need abigail-tools clang debian-archive-keyring dpkg-dev fakeroot g++-mingw-w64-x86-64-posix lintian \
  lld llvm mmdebstrap pkgconf unzip wine64
top=$PWD
work=$top/build/install
sudo=()
[ "$(id -u)" -eq 0 ] || sudo=(sudo)
"${sudo[@]}" rm -rf "$work"
mkdir -p "$work"

# Runs a command; shows what it said only when it fails.
quietly() { "$@" >"$work/log" 2>&1 || { cat "$work/log" >&2; return 1; }; }

printf 'GIF89a\1\0\1\0\0\0\0,\0\0\0\0\1\0\1\0\0\2\2D\1\0;' >"$work/holiday.gif"
# recognises FOLDER COMMAND...: it prints 0x0305 for the picture.
recognises() {
  local said
  said=$(cd "$work" && "${@:2}")
  [[ "$said" == 0x0305* ]] || { echo "install: $1 says '$said'" >&2; return 1; }
  echo "$1: $said"
}

# new_folder NAME [FILE...]: a folder outside the tree with the example program.
new_folder() {
  mkdir "$work/$1"
  cp examples/recognise.cpp "${@:2}" "$work/$1"
  cd "$work/$1" || exit
}

echo "-- packages"
rm -rf build/packages
quietly ./package
quietly lintian --allow-root --fail-on error build/packages/*.deb

echo "-- the header, C++98 to C++23"
for standard in 98 03 11 14 17 20 2b; do
  for compiler in g++ clang++; do
    $compiler -std=c++$standard -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wundef -Werror \
      -fsyntax-only -Iinclude examples/functions.cpp
  done
done

echo "-- shared library"
quietly cmake --install build/release --prefix "$work/elsewhere"
mv "$work/elsewhere" "$work/prefix"  # what is installed may be moved
recognises program "$work/prefix/bin/typescout" -b holiday.gif
(
  new_folder find_package examples/find_package/CMakeLists.txt
  quietly cmake -S . -B build -G 'Ninja Multi-Config' -DCMAKE_PREFIX_PATH="$work/prefix"
  quietly cmake --build build --config Release
)
recognises find_package "$work/find_package/build/Release/recognise"
(
  new_folder pkg_config examples/pkg_config.sh
  PKG_CONFIG_PATH=$work/prefix/lib/pkgconfig quietly sh pkg_config.sh
)
recognises pkg-config env LD_LIBRARY_PATH="$work/prefix/lib" "$work/pkg_config/recognise"

echo "-- static library"
quietly cmake -S . -B "$work/static/build" -G 'Ninja Multi-Config' -DBUILD_SHARED_LIBS=OFF \
  -DTYPESCOUT_CLI=OFF
quietly cmake --build "$work/static/build" --config Release
quietly cmake --install "$work/static/build" --config Release --prefix "$work/static/prefix"
tests/module/exports.sh "$work/static/prefix/lib/libtypescout.a"
(
  new_folder static/find_package examples/find_package/CMakeLists.txt
  quietly cmake -S . -B build -G Ninja -DCMAKE_PREFIX_PATH="$work/static/prefix"
  quietly cmake --build build
)
recognises 'find_package, static' "$work/static/find_package/build/recognise"
(
  new_folder static/own_names tests/install/own_names.cpp
  # shellcheck disable=SC2046  # several arguments
  quietly g++ own_names.cpp -o own_names \
    $(PKG_CONFIG_PATH=$work/static/prefix/lib/pkgconfig pkg-config --cflags --libs typescout)
)
recognises 'names of its own, static' "$work/static/own_names/own_names"

echo "-- add_subdirectory"
# GoogleTest and the program's libraries are missing: including them is an error.
mkdir -p "$work"/poison/{CLI,gtest,nlohmann}
for header in CLI/CLI.hpp gtest/gtest.h nlohmann/json.hpp; do
  echo '#error "not installed"' >"$work/poison/$header"
done
(
  new_folder subdirectory examples/subdirectory/CMakeLists.txt
  ln -s "$top" typescout
  export CPLUS_INCLUDE_PATH=$work/poison
  quietly cmake -S . -B build -G 'Unix Makefiles' \
    -DCMAKE_PROJECT_recognise_INCLUDE="$top/tests/install/no_leaks.cmake"
  quietly cmake --build build --parallel
)
recognises add_subdirectory "$work/subdirectory/build/recognise"

echo "-- Windows"
unzip -q build/packages/typescout-*-windows-*.zip -d "$work/windows"
zip=$(echo "$work"/windows/*)
wine=("$top/cmake/wine.sh" "$top/build/windows/wine")
mkdir -p build/windows
cp "$work/holiday.gif" "$zip/bin"
clang++ --target=x86_64-pc-windows-msvc -O1 -Wall -Werror -I"$zip/include" \
  -c tests/install/windows_client.cpp -o "$work/windows/client.obj"
lld-link /nologo /nodefaultlib /entry:Start /subsystem:console /out:"$zip/bin/client.exe" \
  "$work/windows/client.obj" "$zip/lib/typescout.lib" \
  "$(x86_64-w64-mingw32-g++-posix -print-file-name=libkernel32.a)"
(cd "$zip/bin" && quietly "${wine[@]}" client.exe)
(
  new_folder windows/find_package examples/find_package/CMakeLists.txt
  quietly cmake -S . -B build -G Ninja -Dtypescout_DIR="$zip/lib/cmake/typescout" \
    -DCMAKE_TOOLCHAIN_FILE="$top/cmake/windows_toolchain.cmake" -DCMAKE_EXE_LINKER_FLAGS=-static \
    -DCMAKE_CXX_STANDARD_LIBRARIES=-lkernel32
  quietly cmake --build build
  cp build/recognise.exe "$zip/bin"
)
recognises 'find_package, Windows' "${wine[@]}" "$zip/bin/recognise.exe"

echo "-- Debian packages in a fresh root"
# The root has what the packages depend on and the programs that show their parts. It is kept.
field() { for deb in build/packages/*.deb; do dpkg-deb -f "$deb" "$1"; done; }
needed=$(field Depends | tr ',' '\n' | sed -E 's/^ *([^ (|]+).*/\1/' | sort -u |
  grep -vxF "$(field Package)" | tr '\n' ,)bash-completion,fish,man-db,zsh
suite=$(. /etc/os-release && echo "$VERSION_CODENAME")
root=$top/build/debian-root-$(sha1sum <<<"$suite $needed" | cut -c1-8).tar
if ! [ -f "$root" ]; then
  sources=/etc/apt/sources.list.d/debian.sources  # the mirror that this machine uses
  [ -f "$sources" ] || sources=/etc/apt/sources.list
  quietly "${sudo[@]}" mmdebstrap --variant=apt --format=tar --include="$needed" \
    "$suite" "$root.new" "$sources"
  mv "$root.new" "$root"
fi
mkdir "$work/root"
"${sudo[@]}" tar -xf "$root" -C "$work/root" --exclude='./dev/*'
"${sudo[@]}" mkdir "$work/root/packages"
"${sudo[@]}" cp build/packages/*.deb "$work/holiday.gif" tests/install/debian_root.sh \
  "$work/root/packages"
"${sudo[@]}" mknod -m 666 "$work/root/dev/null" c 1 3
"${sudo[@]}" chroot "$work/root" /bin/sh /packages/debian_root.sh
"${sudo[@]}" rm -rf "$work/root"

echo "-- ABI"
configure dev
quietly cmake --build build/dev --target typescout
abidiff --exported-interfaces-only module/typescout.abi build/dev/libtypescout.so
