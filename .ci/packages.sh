# Moved.
. "$(dirname "${BASH_SOURCE[0]}")/../tools/need.sh"
