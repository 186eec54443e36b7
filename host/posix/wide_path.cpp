#include "host/posix/wide_path.h"

#include <cstddef>
#include <cstdint>
#include <new>
#include <string>

namespace posix_host {
namespace {

// U+DC00 + byte stands for a byte that is not part of valid UTF-8.
constexpr char32_t RAW_BYTE = 0xDC00;
constexpr char32_t FIRST_RAW_BYTE = RAW_BYTE + 0x80;
constexpr char32_t LAST_RAW_BYTE = RAW_BYTE + 0xFF;

struct Character {
  char32_t value;
  std::size_t length;  // in bytes; 0 when the bytes are not valid UTF-8
};

// The first character of `bytes`, which are not empty. RFC 3629, section 4.
Character Decode(std::string_view bytes) {
  const auto at = [bytes](std::size_t i) {
    return i < bytes.size() ? static_cast<std::uint8_t>(bytes[i]) : std::uint8_t{0};
  };
  const std::uint8_t lead = at(0);
  if (lead < 0x80) return {lead, 1};
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4) return {0, 0};
  char32_t value = lead & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((at(i) & 0xC0) != 0x80) return {0, 0};
    value = value << 6 | (at(i) & 0x3Fu);
  }
  const bool isShortest = length == 2 || value >= (length == 3 ? 0x800u : 0x10000u);
  const bool isScalar = value <= 0x10FFFF && (value < 0xD800 || value > 0xDFFF);
  return {value, isShortest && isScalar ? length : 0};
}

// Writes one character to `to`, which has room for four bytes. Returns how many were written, 0 for
// what is no character. RFC 3629, section 3.
std::size_t Encode(char32_t c, char* to) {
  const auto put = [to](std::size_t at, char32_t value) { to[at] = static_cast<char>(value); };
  const auto tail = [c](int shift) { return 0x80 | (c >> shift & 0x3F); };
  if (c < 0x80) {
    put(0, c);
    return 1;
  }
  if (c < 0x800) {
    put(0, 0xC0 | c >> 6);
    put(1, tail(0));
    return 2;
  }
  if (c >= FIRST_RAW_BYTE && c <= LAST_RAW_BYTE) {
    put(0, c - RAW_BYTE);
    return 1;
  }
  if (c >= 0xD800 && c <= 0xDFFF) return 0;
  if (c < 0x10000) {
    put(0, 0xE0 | c >> 12);
    put(1, tail(6));
    put(2, tail(0));
    return 3;
  }
  if (c > 0x10FFFF) return 0;
  put(0, 0xF0 | c >> 18);
  put(1, tail(12));
  put(2, tail(6));
  put(3, tail(0));
  return 4;
}

}  // namespace

TvnPlatform::TvnStringT<wchar_t> WidePath(std::string_view bytes) {
  try {
    std::wstring wide;
    while (!bytes.empty()) {
      const Character c = Decode(bytes);
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
    const std::size_t added = Encode(static_cast<char32_t>(*path), bytes_.data() + length);
    if (added == 0) return;
    length += added;
  }
  bytes_[length] = '\0';
  valid_ = true;
}

}  // namespace posix_host
