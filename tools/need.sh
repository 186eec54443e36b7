# need PACKAGE...: installs those of Debian's packages that are not there. Sourced by the commands.
need() {
  local package missing=() as_root=()
  for package in "$@"; do
    dpkg-query -W -f='${Status}\n' "$package" 2>/dev/null | grep -q '^install ok installed' ||
      missing+=("$package")
  done
  [ "${#missing[@]}" -gt 0 ] || return 0
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
      echo "Missing, and to be installed as root: apt-get install ${missing[*]}" >&2
      return 69
    fi
    as_root=(sudo)
  fi
  echo "Installing ${missing[*]}" >&2
  "${as_root[@]}" apt-get update -qq >&2 &&
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -qq -y \
      --no-install-recommends "${missing[@]}" >&2
}
