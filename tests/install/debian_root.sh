#!/bin/sh
# Run as root in a fresh Debian root with the packages and holiday.gif in /packages: installs them, uses
# what they bring as its user would, removes them, and fails when anything stays behind.
set -eu
cd /packages
export HOME=/tmp  # fish writes there

files() {
  find / -xdev \( -path /packages -o -path /proc -o -path /sys -o -path /dev -o -path /tmp \
    -o -path /var/cache -o -path /var/log -o -path /var/lib/dpkg \) -prune -o -print | sort
}

expect() {
  [ "$1" = "$2" ] || {
    echo "expected: $1" >&2
    echo "got:      $2" >&2
    exit 1
  }
}

files >/tmp/before
dpkg -i ./*.deb >/dev/null

expect "holiday.gif: 0x0305 GIF picture" "$(typescout holiday.gif)"
expect 2 "$(typescout --modules | grep -c ": version ")"
expect "0x0305 GIF picture" "$(python3 -c '
import typescout
answer = typescout.identify("holiday.gif")
print(answer.id, answer.name)')"
man typescout | grep -q 'typescout'
test -f /usr/lib/*/cmake/typescout/typescout-config.cmake

# Each shell offers --completion for what was typed, found at the place where it looks by itself.
expect --completion "$(bash -c '
  . /usr/share/bash-completion/bash_completion
  _completion_loader typescout
  compopt() { :; }  # works only while bash completes
  COMP_WORDS=(typescout --comple) COMP_CWORD=1 COMP_LINE="typescout --comple" COMP_POINT=18
  $(complete -p typescout | sed "s/.*-F \([^ ]*\).*/\1/") typescout --comple typescout
  echo "${COMPREPLY[@]}"')"
expect _typescout "$(zsh -fc 'autoload -U compinit; compinit -D -u; echo "$_comps[typescout]"')"
expect --completion "$(fish -c 'complete -C "typescout --comple"' | cut -f1)"

# shellcheck disable=SC2046  # several packages
dpkg --purge $(for deb in ./*.deb; do dpkg-deb -f "$deb" Package; done) >/dev/null
files >/tmp/after
diff /tmp/before /tmp/after
