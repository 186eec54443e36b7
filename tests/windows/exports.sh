#!/usr/bin/env bash
# exports.sh MODULE IMPORT_LIBRARY PLUGIN WRITE_SAMPLES EMULATOR...: the module exports the six functions under the names
# that the platform's own compiler gives them and nothing else, needs modules of the system's only,
# and serves a program built with that compiler.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
module=$1 library=$2 plugin=$3 write_samples=$4 emulator=("${@:5}")
work=$(mktemp -d)
trap 'kill $(jobs -p) 2>/dev/null || true; rm -rf "$work"' EXIT

x86_64-w64-mingw32-objdump -p "$module" >"$work/module"
diff - <(sed -n '/^\[Ordinal\/Name Pointer\]/,/^$/s/^\s*\[ *[0-9]*\] //p; s/^\s*DLL Name: //p' \
  "$work/module" | LC_ALL=C sort) <<'END'
?CheckFiltersFromIDList@@YAHPEB_WQEAHHHPEAEH@Z
?CheckFiltersFromList@@YAHPEA_WQEAHHHPEAEH@Z
?CheckOneFilter@@YAHPEB_WHH@Z
?CheckValidFilterID@@YAHH@Z
?GetNumTypeScoutProcs@@YAHXZ
?TypeScoutFile@@YAHPEB_W@Z
KERNEL32.dll
msvcrt.dll
ole32.dll
END

compile() {
  clang++ --target=x86_64-pc-windows-msvc -std=c++20 -O1 -fexceptions -fcxx-exceptions \
    -Wall -Wextra -Werror -I"$here/../.." -I"$here/../../include" -c "$here/$1.cpp" -o "$work/$1.obj"
}
compile client
compile raising_module
printf '%s\n' 'LIBRARY msvcrt.dll' EXPORTS __C_specific_handler __CxxFrameHandler3 \
  _CxxThrowException _get_heap_handle >"$work/msvcrt.def"
llvm-dlltool -m i386:x86-64 -d "$work/msvcrt.def" -l "$work/msvcrt.lib"
systems=("$work/msvcrt.lib" "$(x86_64-w64-mingw32-g++-posix -print-file-name=libkernel32.a)")
lld-link /nologo /nodefaultlib /entry:Start /subsystem:console /out:"$work/client.exe" \
  "$work/client.obj" "$library" "${systems[@]}"
lld-link /nologo /nodefaultlib /dll /noentry /out:"$work/DCRaw.dll" \
  "$work/raising_module.obj" "${systems[@]}"

cp "$module" "$work"
cd "$work"
# A picture whose data, in blocks of 255 bytes, runs past what is read at first.
{ printf 'GIF89a\0\0\0\0\0\0\0,\0\0\0\0\0\0\0\0\0\b'
  head -c $((274 * 256)) /dev/zero | tr '\0' '\377'
  printf '\0;'
} >whole.gif
cp whole.gif shrinking.gif
mkdir filters gcc
cp DCRaw.dll filters/TvnPDFImport.dll
cp "$plugin" gcc/TvnPDFImport.dll
printf '%%PDF-1.7' | tee pdf- >pdf+
"${emulator[@]}" "$write_samples" --seeds seeds
documents=(seeds/compound/*)
tee document- <"${documents[0]}" >document+
while truncate -s 48M shrinking.gif && sleep 0.003 && truncate -s 60000 shrinking.gif; do :; done &
timeout 100 "${emulator[@]}" ./client.exe || { echo "the program's check $? failed" >&2; exit 1; }
