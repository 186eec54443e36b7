// Characters as UTF-8. RFC 3629.
#ifndef TYPESCOUT_HOST_PORTABLE_UTF8_H
#define TYPESCOUT_HOST_PORTABLE_UTF8_H

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace utf8 {

struct Character {
  char32_t value = 0;
  std::size_t length = 0;  // in bytes; 0 when the bytes do not begin with valid UTF-8
};

// The first character of `bytes`, which are not empty.
inline Character Decode(std::string_view bytes) {
  const auto at = [bytes](std::size_t i) {
    return i < bytes.size() ? static_cast<std::uint8_t>(bytes[i]) : std::uint8_t{0};
  };
  const std::uint8_t lead = at(0);
  if (lead < 0x80) return {lead, 1};
  if (lead < 0xC2 || lead > 0xF4) return {};
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  char32_t value = lead & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((at(i) & 0xC0) != 0x80) return {};
    value = value << 6 | (at(i) & 0x3Fu);
  }
  const bool isShortest = length == 2 || value >= (length == 3 ? 0x800u : 0x10000u);
  const bool isScalar = value <= 0x10FFFF && (value < 0xD800 || value > 0xDFFF);
  return {value, isShortest && isScalar ? length : 0};
}

// Writes a character of at most U+10FFFF to `to`, which has room for four bytes. Returns how many
// were written. A half of a surrogate pair is written too, as three bytes.
inline std::size_t Encode(char32_t c, char* to) {
  if (c < 0x80) {
    *to = static_cast<char>(c);
    return 1;
  }
  const std::size_t length = c < 0x800 ? 2 : c < 0x10000 ? 3 : 4;
  for (std::size_t i = length - 1; i > 0; --i, c >>= 6) {
    to[i] = static_cast<char>(0x80 | (c & 0x3F));
  }
  *to = static_cast<char>((0xF00u >> length & 0xF0) | c);
  return length;
}

}  // namespace utf8

#endif  // TYPESCOUT_HOST_PORTABLE_UTF8_H
