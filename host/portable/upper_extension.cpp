// Windows has a version of its own, which asks the runtime.
#include "host/path.h"

namespace SystemIO::Path {

TvnPlatform::TvnStringT<wchar_t> GetUpperExtension(const wchar_t* path) {
  TvnPlatform::TvnStringT<wchar_t> extension = GetExtension(path);
  extension.MakeUpper();
  return extension;
}

}  // namespace SystemIO::Path
