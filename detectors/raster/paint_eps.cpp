// Encapsulated PostScript that the suite's paint program wrote, from its version 7 on, and that is
// not separated into plate files. The binary header is that of Adobe Technical Note 5002,
// "Encapsulated PostScript File Format Specification", section 5.2.
#include <algorithm>
#include <array>
#include <cstdio>

#include "detectors/raster/raster.h"

namespace typescout {
namespace {

// The program's major version, from the text that begins with its name; 0 when there is none.
int ReadVersion(std::string_view text) {
  constexpr std::size_t LONGEST = 260;
  std::array<char, LONGEST + 1> copy = {};
  text.copy(copy.data(), std::min(text.size(), LONGEST));
  int version = 0;
  // The maker, the program with whatever is joined to it, the number.
  if (std::sscanf(copy.data(), "%*s %*s %d", &version) != 1) return 0;  // NOLINT: no other errors
  return version;
}

}  // namespace

std::int32_t DetectPaintEps(const ProbeContext* probe) {
  constexpr int FIRST_VERSION = 7;
  const ByteView head = Head(probe);
  if (!head.Matches(0, "\xC5\xD0\xD3\xC6")) {
    if (!head.Matches(0, "%!") || head.Find("%%BoundingBox:") == ByteView::NOT_FOUND) return 0;
  }
  if (head.Find("PlateFile:") != ByteView::NOT_FOUND) return 0;
  const ByteView::Position name = head.Find("Tavon PIXEL-FORGE");
  if (name == ByteView::NOT_FOUND) return 0;
  return ReadVersion(head.Text().substr(static_cast<std::size_t>(name))) >= FIRST_VERSION;
}

}  // namespace typescout
