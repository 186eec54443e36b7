#include "host/posix/wide_path.h"

#include <cstddef>
#include <cstdint>
#include <new>
#include <string>

#include "host/portable/utf8.h"

namespace posix_host {
namespace {

// U+DC00 + byte stands for a byte that is not part of valid UTF-8.
constexpr char32_t RAW_BYTE = 0xDC00;
constexpr char32_t FIRST_RAW_BYTE = RAW_BYTE + 0x80;
constexpr char32_t LAST_RAW_BYTE = RAW_BYTE + 0xFF;

// Writes one character to `to`, which has room for four bytes. Returns how many were written, 0 for
// what is no character.
std::size_t Encode(char32_t c, char* to) {
  if (c >= FIRST_RAW_BYTE && c <= LAST_RAW_BYTE) {
    *to = static_cast<char>(c - RAW_BYTE);
    return 1;
  }
  const bool isScalar = c <= 0x10FFFF && (c < 0xD800 || c > 0xDFFF);
  return isScalar ? utf8::Encode(c, to) : 0;
}

}  // namespace

TvnPlatform::TvnStringT<wchar_t> WidePath(std::string_view bytes) {
  try {
    std::wstring wide;
    while (!bytes.empty()) {
      const utf8::Character c = utf8::Decode(bytes);
      const char32_t raw = RAW_BYTE + static_cast<std::uint8_t>(bytes.front());
      wide += static_cast<wchar_t>(c.length == 0 ? raw : c.value);
      bytes.remove_prefix(c.length == 0 ? 1 : c.length);
    }
    return TvnPlatform::TvnStringT<wchar_t>(std::wstring_view(wide));
  } catch (const std::bad_alloc&) {
    return {};
  }
}

PathBytes::PathBytes(const wchar_t* path) {
  if (path == nullptr) return;
  std::size_t length = 0;
  for (; *path != L'\0'; ++path) {
    if (bytes_.size() - length < 5) return;  // a character and the terminator
    const auto c = static_cast<char32_t>(*path);
    if (c < 0x80) {  // most are ASCII
      bytes_[length++] = static_cast<char>(c);
      continue;
    }
    const std::size_t added = Encode(c, bytes_.data() + length);
    if (added == 0) return;
    length += added;
  }
  bytes_[length] = '\0';
  valid_ = true;
}

}  // namespace posix_host
