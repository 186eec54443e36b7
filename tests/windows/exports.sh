#!/usr/bin/env bash
# exports.sh MODULE IMPORT_LIBRARY EMULATOR...: the module exports the six functions under the names
# that the platform's own compiler gives them and nothing else, needs modules of the system's only,
# and serves a program built with that compiler.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
module=$1 library=$2 emulator=("${@:3}")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

wanted=$(sort <<'END'
?CheckFiltersFromIDList@@YAHPEB_WQEAHHHPEAEH@Z
?CheckFiltersFromList@@YAHPEA_WQEAHHHPEAEH@Z
?CheckOneFilter@@YAHPEB_WHH@Z
?CheckValidFilterID@@YAHH@Z
?GetNumTypeScoutProcs@@YAHXZ
?TypeScoutFile@@YAHPEB_W@Z
END
)
same() { # WHAT FOUND: is it the wanted list?
  diff <(echo "$wanted") <(echo "$2") || { echo "$1: not the six names" >&2; exit 1; }
}

x86_64-w64-mingw32-objdump -p "$module" >"$work/module"
same "the export table" "$(sed -n '/^\[Ordinal\/Name Pointer\]/,/^$/s/^\s*\[ *[0-9]*\] //p' \
  "$work/module" | sort)"

needed=$(sed -n 's/^\s*DLL Name: //p' "$work/module" | sort -f)
if [ "$needed" != $'KERNEL32.dll\nmsvcrt.dll\nole32.dll' ]; then
  echo "needs other modules than the system's:" $needed >&2
  exit 1
fi

clang++ --target=x86_64-pc-windows-msvc -std=c++20 -O1 -Wall -Wextra -Werror \
  -I"$here/../../include" -c "$here/client.cpp" -o "$work/client.obj"
same "the header" "$(x86_64-w64-mingw32-nm --undefined-only "$work/client.obj" |
  sed -n 's/^ *U \(?.*\)/\1/p' | sort)"

system=$(x86_64-w64-mingw32-g++-posix -print-file-name=libkernel32.a)
lld-link /nologo /nodefaultlib /entry:Start /subsystem:console /out:"$work/client.exe" \
  "$work/client.obj" "$library" "$system"
cp "$module" "$work"
cd "$work"
timeout 100 "${emulator[@]}" "$work/client.exe" || { echo "the program's check $? failed" >&2; exit 1; }
