// A path of the system's as a wide string.
#ifndef TYPESCOUT_HOST_POSIX_WIDE_PATH_H
#define TYPESCOUT_HOST_POSIX_WIDE_PATH_H

#include <string_view>

#include "host/strings.h"

namespace posix_host {

// Reads UTF-8; every byte that is not part of it becomes U+DC00 + byte. PathBytes turns the result
// back into the same bytes. Empty when memory runs out.
TvnPlatform::TvnStringT<wchar_t> WidePath(std::string_view bytes);

}  // namespace posix_host

#endif  // TYPESCOUT_HOST_POSIX_WIDE_PATH_H
