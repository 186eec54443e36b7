#!/usr/bin/env bash
# wine.sh PREFIX PROGRAM [ARGUMENT...]: runs a Windows program under Wine, without a display, and
# without messages of Wine's own unless WINEDEBUG asks for some. PREFIX is the folder that Wine keeps
# its files in.
set -euo pipefail
unset DISPLAY WAYLAND_DISPLAY
export WINEPREFIX=$1
export WINEDEBUG=${WINEDEBUG:--all}
# Neither menus on the user's desktop nor offers to download parts that nothing here needs.
export WINEDLLOVERRIDES='winemenubuilder.exe,mscoree,mshtml='
exec /usr/lib/wine/wine64 "${@:2}"
