// Wide paths and the system's paths, which are bytes.
//
// The bytes are read as UTF-8, whatever the locale. A byte 0x80 to 0xFF that is not part of valid
// UTF-8 becomes the character U+DC00 + byte, so that every name can be written as a wide path and
// turned back into the same bytes.
#ifndef TYPESCOUT_HOST_POSIX_WIDE_PATH_H
#define TYPESCOUT_HOST_POSIX_WIDE_PATH_H

#include <array>
#include <string_view>

#include "host/strings.h"
#include "typescout/typescout.h"

namespace posix_host {

// The system's path as a wide string; empty when memory runs out.
TvnPlatform::TvnStringT<wchar_t> WidePath(std::string_view bytes);

// A wide path as the system's bytes. It lies on the stack, since every open needs one, and has room
// for TYPESCOUT_PATH_LIMIT characters of any kind.
class PathBytes {
 public:
  // `path` may be null.
  explicit PathBytes(const wchar_t* path);
  // NUL-terminated, valid while the object lives. Null when the path was null or too long, or held
  // something other than Unicode scalar values and U+DC80 to U+DCFF.
  const char* get() const { return valid_ ? bytes_.data() : nullptr; }

 private:
  std::array<char, TYPESCOUT_PATH_LIMIT * 4 + 1> bytes_;
  bool valid_ = false;
};

}  // namespace posix_host

#endif  // TYPESCOUT_HOST_POSIX_WIDE_PATH_H
