#include "core/byte_view.h"

#include <array>

namespace typescout {
namespace {

// Horspool's search: the byte under the text's last character says how far to move on. Uniform
// data, the worst case of a search for the first character, is what it is best at.
std::size_t FindBySkipping(std::string_view bytes, std::string_view text, std::size_t from) {
  const std::size_t last = text.size() - 1;
  std::array<std::uint32_t, 256> skip;
  skip.fill(static_cast<std::uint32_t>(text.size()));
  for (std::size_t i = 0; i < last; ++i) {
    skip[static_cast<std::uint8_t>(text[i])] = static_cast<std::uint32_t>(last - i);
  }
  for (std::size_t at = from; bytes.size() - at >= text.size();) {
    const char end = bytes[at + last];
    if (end == text[last] && bytes.compare(at, text.size(), text) == 0) return at;
    at += skip[static_cast<std::uint8_t>(end)];  // at most to the end of `bytes`
  }
  return std::string_view::npos;
}

}  // namespace

std::size_t FindText(std::string_view bytes, std::string_view text) {
  // Finding the first character is fastest while it is rare; how many false starts are forgiven
  // before the other method takes over.
  constexpr int MAX_FALSE_STARTS = 24;
  if (text.empty()) return 0;
  std::size_t at = 0;
  for (int falseStarts = 0; falseStarts < MAX_FALSE_STARTS; ++falseStarts) {
    at = bytes.find(text.front(), at);
    if (at == std::string_view::npos || bytes.size() - at < text.size()) {
      return std::string_view::npos;
    }
    if (bytes.compare(at, text.size(), text) == 0) return at;
    ++at;
  }
  return FindBySkipping(bytes, text, at);
}

}  // namespace typescout
