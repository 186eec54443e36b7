#include "cli/output/names.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

namespace typescout::cli {
namespace {

struct Character {
  char32_t value = 0;
  std::size_t length = 0;  // in bytes; 0 when the bytes do not begin with valid UTF-8
};

// RFC 3629, section 4.
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

void AppendWide(char32_t value, std::wstring* wide) {
  if constexpr (sizeof(wchar_t) == 2) {
    if (value > 0xFFFF) {
      *wide += static_cast<wchar_t>(0xD7C0 + (value >> 10));
      value = 0xDC00 | (value & 0x3FF);
    }
  }
  *wide += static_cast<wchar_t>(value);
}

std::string EscapeByte(char byte) {
  switch (byte) {
    case '\n':
      return "\\n";
    case '\t':
      return "\\t";
    case '\r':
      return "\\r";
    case '\\':
      return "\\\\";
    default:
      break;
  }
  std::array<char, 8> text;
  std::snprintf(text.data(), text.size(), "\\x%02X",
                static_cast<unsigned>(static_cast<std::uint8_t>(byte)));
  return text.data();
}

bool IsPrintable(const Character& c) {
  return c.length != 0 && c.value >= 0x20 && c.value != '\\' && (c.value < 0x7F || c.value > 0x9F);
}

// Half a surrogate pair, encoded like any other character: how Windows' names are kept as bytes.
Character DecodeHalf(std::string_view bytes) {
  const auto at = [bytes](std::size_t i) { return static_cast<std::uint8_t>(bytes[i]); };
  const bool isHalf =
      bytes.size() >= 3 && at(0) == 0xED && (at(1) & 0xE0) == 0xA0 && (at(2) & 0xC0) == 0x80;
  if (!isHalf) return {};
  return {0xD000 | (at(1) & 0x3Fu) << 6 | (at(2) & 0x3Fu), 3};
}

}  // namespace

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

bool IsValidUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    const Character c = Decode(bytes);
    if (c.length == 0) return false;
    bytes.remove_prefix(c.length);
  }
  return true;
}

std::string EscapeForTerminal(std::string_view bytes) {
  std::string text;
  while (!bytes.empty()) {
    const Character c = Decode(bytes);
    const std::size_t length = std::max<std::size_t>(c.length, 1);
    if (IsPrintable(c)) {
      text += bytes.substr(0, length);
    } else {
      for (const char byte : bytes.substr(0, length)) text += EscapeByte(byte);
    }
    bytes.remove_prefix(length);
  }
  return text;
}

std::string Base64(std::string_view bytes) {
  constexpr std::string_view ALPHABET =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (; !bytes.empty(); bytes.remove_prefix(std::min<std::size_t>(3, bytes.size()))) {
    std::uint32_t group = 0;
    for (std::size_t i = 0; i < 3; ++i) {
      group = group << 8 | (i < bytes.size() ? static_cast<std::uint8_t>(bytes[i]) : 0u);
    }
    for (std::size_t i = 0; i < 4; ++i) {
      text += i <= bytes.size() ? ALPHABET[group >> (18 - 6 * i) & 0x3F] : '=';
    }
  }
  return text;
}

}  // namespace typescout::cli
