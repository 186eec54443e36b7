// The extension as the runtime's own path splitting gives it.
#include <stdlib.h>

#include "host/path.h"

namespace SystemIO::Path {

TvnPlatform::TvnStringT<wchar_t> GetUpperExtension(const wchar_t* path) {
  wchar_t extension[_MAX_EXT] = {};
  _wsplitpath(path, nullptr, nullptr, nullptr, extension);
  TvnPlatform::TvnStringT<wchar_t> upper(extension);
  // Not _wcsupr, which is the same in the C locale only: the program may have set another one.
  upper.MakeUpper();
  return upper;
}

}  // namespace SystemIO::Path
