#include "host/posix/wide_path.h"

#include <cstdint>
#include <string>

namespace posix_host {
namespace {

struct Character {
  char32_t value;
  std::size_t length;  // in bytes; 0 when the bytes are not valid UTF-8
};

// RFC 3629, section 4.
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

}  // namespace

TvnPlatform::TvnStringT<wchar_t> WidePath(std::string_view bytes) {
  constexpr char32_t RAW_BYTE = 0xDC00;
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

}  // namespace posix_host
