// For systems whose runtime has no path splitting of its own.
#include "host/path.h"

namespace SystemIO::Path {

TvnPlatform::TvnStringT<wchar_t> GetUpperExtension(const wchar_t* path) {
  TvnPlatform::TvnStringT<wchar_t> extension = GetExtension(path);
  extension.MakeUpper();
  return extension;
}

}  // namespace SystemIO::Path
