#!/usr/bin/env bash
# exports.sh MODULE: the module exports the six functions and nothing else, and needs no library but
# the language's own.
set -euo pipefail

exported=$(nm -D --defined-only --demangle "$1" | cut -d' ' -f3- | sort)
wanted=$(sort <<'END'
CheckFiltersFromIDList(wchar_t const*, int*, int, int, unsigned char*, int)
CheckFiltersFromList(wchar_t*, int*, int, int, unsigned char*, int)
CheckOneFilter(wchar_t const*, int, int)
CheckValidFilterID(int)
GetNumTypeScoutProcs()
TypeScoutFile(wchar_t const*)
END
)
diff <(echo "$wanted") <(echo "$exported")

needed=$(readelf -d "$1" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')
if strangers=$(grep -vE '^(libstdc\+\+|libm|libgcc_s|libc|ld-linux-x86-64)\.so' <<<"$needed"); then
  echo "needs more than the standard library: $strangers"
  exit 1
fi
