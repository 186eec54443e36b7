#include "cli/utf8.h"

#include <algorithm>
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
Character DecodeHalf(std::string_view bytes) {
  const auto at = [bytes](std::size_t i) { return static_cast<std::uint8_t>(bytes[i]); };
  const bool isHalf =
      bytes.size() >= 3 && at(0) == 0xED && (at(1) & 0xE0) == 0xA0 && (at(2) & 0xC0) == 0x80;
  if (!isHalf) return {};
  return {0xD000 | (at(1) & 0x3Fu) << 6 | (at(2) & 0x3Fu), 3};
}

}  // namespace

Character Decode(std::string_view bytes) {
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

bool IsValidUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    const Character c = Decode(bytes);
    if (c.length == 0) return false;
    bytes.remove_prefix(c.length);
  }
  return true;
}

void AppendUtf8(char32_t value, std::string* bytes) {
  const auto put = [bytes](char32_t byte) { *bytes += static_cast<char>(byte); };
  const auto tail = [&put, value](int shift) { put(0x80 | (value >> shift & 0x3F)); };
  if (value < 0x80) return put(value);
  if (value < 0x800) {
    put(0xC0 | value >> 6);
  } else {
    if (value < 0x10000) {
      put(0xE0 | value >> 12);
    } else {
      put(0xF0 | value >> 18);
      tail(12);
    }
    tail(6);
  }
  tail(0);
}

std::wstring ToWide(std::string_view bytes) {
  constexpr char32_t RAW_BYTE = 0xDC00;
  std::wstring wide;
  wide.reserve(bytes.size());
  while (!bytes.empty()) {
    Character c = Decode(bytes);
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
