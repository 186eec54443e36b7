#include "cli/escape.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

#include "cli/utf8.h"

namespace typescout::cli {
namespace {

constexpr std::string_view HEX = "0123456789ABCDEF";

// Unicode 15: Cc, Zl, Zp and the characters of the bidirectional algorithm (UAX 9, table 4).
bool IsControl(char32_t c) {
  return c < 0x20 || (c >= 0x7F && c <= 0x9F) || c == 0x61C || c == 0x200E || c == 0x200F ||
         (c >= 0x2028 && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

// Goes through the text: `plain` gets the longest pieces without control characters, `special` gets
// each of these and each byte that is not part of valid UTF-8 (then of length 0).
template <typename Plain, typename Special>
void ForEachPiece(std::string_view text, Plain plain, Special special) {
  std::size_t start = 0;
  std::size_t at = 0;
  while (at < text.size()) {
    const auto byte = static_cast<std::uint8_t>(text[at]);
    const utf8::Character c =
        byte < 0x80 ? utf8::Character{byte, 1} : utf8::Decode(text.substr(at, std::size_t{4}));
    if (c.length != 0 && !IsControl(c.value)) {
      at += c.length;
      continue;
    }
    if (at != start) plain(text.substr(start, at - start));
    const std::size_t length = std::max<std::size_t>(c.length, 1);
    special(c, text.substr(at, length));
    start = at += length;
  }
  if (at != start) plain(text.substr(start));
}

// The letter behind the backslash, where there is one.
char ShortEscape(std::string_view bytes) {
  switch (bytes.front()) {
    case '\n':
      return 'n';
    case '\t':
      return 't';
    case '\r':
      return 'r';
    default:
      return 0;
  }
}

}  // namespace

std::string EscapeControls(std::string_view text) {
  std::string escaped;
  bool isPlain = true;
  ForEachPiece(
      text, [](std::string_view) {},
      [&isPlain](utf8::Character, std::string_view) { isPlain = false; });
  if (isPlain) return std::string(text);
  ForEachPiece(
      text,
      [&escaped](std::string_view plain) {
        for (const char c : plain) escaped.append(c == '\\' ? 2 : 1, c);
      },
      [&escaped](utf8::Character, std::string_view bytes) {
        if (const char letter = ShortEscape(bytes); letter != 0) {
          escaped.append({'\\', letter});
          return;
        }
        for (const char c : bytes) {
          const auto byte = static_cast<std::uint8_t>(c);
          escaped.append({'\\', 'x', HEX[byte >> 4], HEX[byte & 15]});
        }
      });
  return escaped;
}

void AppendJsonString(std::string_view text, std::string* json) {
  *json += '"';
  ForEachPiece(
      text,
      [json](std::string_view plain) {
        for (std::size_t at = 0; at < plain.size();) {
          const std::size_t end = std::min(plain.find_first_of("\"\\", at), plain.size());
          json->append(plain, at, end - at);
          if (end < plain.size()) json->append({'\\', plain[end]});
          at = end + 1;
        }
      },
      [json](utf8::Character c, std::string_view bytes) {
        if (c.length == 0) {
          AppendUtf8(0xFFFD, json);
        } else if (const char letter = ShortEscape(bytes); letter != 0) {
          json->append({'\\', letter});
        } else {
          std::array<char, 11> escape;
          std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(c.value));
          *json += escape.data();
        }
      });
  *json += '"';
}

std::string QuoteForShell(std::string_view text) {
  std::string quoted = "'";
  for (const char c : text) quoted += c == '\'' ? "'\\''" : std::string(1, c);
  return quoted + "'";
}

}  // namespace typescout::cli
