#include "cli/utf8.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace typescout::cli {
namespace {

constexpr std::string_view BASE64 =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

void AppendWide(char32_t value, std::wstring* wide) {
  if constexpr (sizeof(wchar_t) == 2) {
    if (value > 0xFFFF) {
      *wide += static_cast<wchar_t>(0xD7C0 + (value >> 10));
      value = 0xDC00 | (value & 0x3FF);
    }
  }
  *wide += static_cast<wchar_t>(value);
}

// Half a surrogate pair, as AppendUtf8() encodes it.
utf8::Character DecodeHalf(std::string_view bytes) {
  const auto at = [bytes](std::size_t i) { return static_cast<std::uint8_t>(bytes[i]); };
  const bool isHalf =
      bytes.size() >= 3 && at(0) == 0xED && (at(1) & 0xE0) == 0xA0 && (at(2) & 0xC0) == 0x80;
  if (!isHalf) return {};
  return {0xD000 | (at(1) & 0x3Fu) << 6 | (at(2) & 0x3Fu), 3};
}

}  // namespace

bool IsValidUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    const utf8::Character c = utf8::Decode(bytes);
    if (c.length == 0) return false;
    bytes.remove_prefix(c.length);
  }
  return true;
}

void AppendUtf8(char32_t value, std::string* bytes) {
  std::array<char, 4> encoded;
  bytes->append(encoded.data(), utf8::Encode(value, encoded.data()));
}

std::wstring ToWide(std::string_view bytes) {
  constexpr char32_t RAW_BYTE = 0xDC00;
  std::wstring wide;
  wide.reserve(bytes.size());
  while (!bytes.empty()) {
    utf8::Character c = utf8::Decode(bytes);
    if (sizeof(wchar_t) == 2 && c.length == 0) c = DecodeHalf(bytes);
    AppendWide(c.length == 0 ? RAW_BYTE + static_cast<std::uint8_t>(bytes.front()) : c.value,
               &wide);
    bytes.remove_prefix(std::max<std::size_t>(c.length, 1));
  }
  return wide;
}

std::string FromWide(std::wstring_view wide) {
  std::string bytes;
  for (std::size_t i = 0; i < wide.size(); ++i) {
    char32_t value = static_cast<char32_t>(wide[i]);
    const bool isPair = value >= 0xD800 && value < 0xDC00 && i + 1 < wide.size() &&
                        wide[i + 1] >= 0xDC00 && wide[i + 1] < 0xE000;
    if (isPair) {
      value = 0x10000 + ((value - 0xD800) << 10) + (static_cast<char32_t>(wide[++i]) - 0xDC00);
    }
    AppendUtf8(value, &bytes);
  }
  return bytes;
}

std::string Base64(std::string_view bytes) {
  std::string text;
  for (; !bytes.empty(); bytes.remove_prefix(std::min<std::size_t>(3, bytes.size()))) {
    std::uint32_t group = 0;
    for (std::size_t i = 0; i < 3; ++i) {
      group = group << 8 | (i < bytes.size() ? static_cast<std::uint8_t>(bytes[i]) : 0u);
    }
    for (std::size_t i = 0; i < 4; ++i) {
      text += i <= bytes.size() ? BASE64[group >> (18 - 6 * i) & 0x3F] : '=';
    }
  }
  return text;
}

std::string FromBase64(std::string_view text) {
  std::string bytes;
  std::uint32_t group = 0;
  int bits = 0;
  for (const char c : text) {
    const std::size_t value = BASE64.find(c);
    if (value == std::string_view::npos) break;
    group = group << 6 | static_cast<std::uint32_t>(value);
    bits += 6;
    if (bits < 8) continue;
    bits -= 8;
    bytes += static_cast<char>(group >> bits & 0xFF);
  }
  return bytes;
}

}  // namespace typescout::cli
