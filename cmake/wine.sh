#!/usr/bin/env bash
# wine.sh PROGRAM [ARGUMENT...]: runs a Windows program under Wine, without a display and without a
# word of Wine's own, in a prefix that WINEPREFIX names.
set -euo pipefail
unset DISPLAY WAYLAND_DISPLAY
: "${WINEPREFIX:?the folder of a private prefix}"
export WINEDEBUG=-all
# Neither menus on the user's desktop nor offers to download parts that nothing here needs.
export WINEDLLOVERRIDES='winemenubuilder.exe,mscoree,mshtml='
exec /usr/lib/wine/wine64 "$@"
