// Encapsulated PostScript that the suite's paint program wrote, from its version 7 on, and that is
// not separated into plate files.
#include <algorithm>
#include <charconv>
#include <limits>
#include <memory>
#include <string_view>
#include <system_error>

#include "detectors/container_headers.h"
#include "detectors/raster/raster.h"

namespace typescout {
namespace {

constexpr std::string_view WHITE_SPACE = " \t\n\v\f\r";

void SkipWhiteSpace(std::string_view* text) {
  text->remove_prefix(std::min(text->find_first_not_of(WHITE_SPACE), text->size()));
}

void SkipWord(std::string_view* text) {
  text->remove_prefix(std::min(text->find_first_of(WHITE_SPACE), text->size()));
}

// The decimal integer, with or without a sign, that `text` starts with; the largest or the smallest
// `int` when it is beyond; 0 when there is no digit.
int ParseInteger(std::string_view text) {
  const bool isNegative = text.starts_with('-');
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  int value = 0;
  const auto parsed = std::from_chars(text.data(), std::to_address(text.end()), value);
  if (parsed.ec != std::errc::result_out_of_range) return value;
  return isNegative ? std::numeric_limits<int>::min() : std::numeric_limits<int>::max();
}

// The program's major version, from the text that begins with its name; 0 when there is none. It
// follows the maker's and the program's name and any characters attached to the latter.
int ReadVersion(std::string_view text) {
  constexpr std::size_t LONGEST = 260;
  text = text.substr(0, LONGEST);
  text = text.substr(0, text.find('\0'));
  for (int word = 0; word < 2; ++word) {
    SkipWord(&text);
    SkipWhiteSpace(&text);
  }
  return ParseInteger(text);
}

}  // namespace

std::int32_t DetectPaintEps(const ProbeContext* probe) {
  constexpr int FIRST_VERSION = 7;
  const ByteView head = Head(probe);
  if (!head.Matches(0, DOS_EPS_MAGIC)) {
    if (!head.Matches(0, "%!") || head.Find("%%BoundingBox:") == ByteView::NOT_FOUND) return 0;
  }
  if (head.Find("PlateFile:") != ByteView::NOT_FOUND) return 0;
  const ByteView::Position name = head.Find("Tavon PIXEL-FORGE");
  if (name == ByteView::NOT_FOUND) return 0;
  return ReadVersion(head.Text().substr(static_cast<std::size_t>(name))) >= FIRST_VERSION;
}

}  // namespace typescout
