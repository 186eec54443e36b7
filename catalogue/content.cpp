#include "catalogue/content.h"

#include <algorithm>
#include <array>

namespace typescout::catalogue {

using namespace std::string_view_literals;

bool IsCompoundDocument(std::string_view head) {
  return head.starts_with("\xD0\xCF\x11\xE0") ||  // [MS-CFB] 2.2
         head.starts_with("\x0E\x11\xFC\x0D");    // as early software wrote it
}

bool IsReadBeyondHead(std::string_view head) {
  constexpr auto STARTS = std::to_array<std::string_view>({
      "GIF8"sv, "%PDF-"sv, "II"sv, "MM"sv,  // TIFF and the camera raw formats made of it
      "FUJIFILM"sv, "FOVb"sv, "\0MRM"sv     // camera raw: RAF, X3F, MRW
  });
  const bool hasBoxes = head.size() >= 8 && head.substr(4, 4) == "ftyp";  // camera raw: CR3
  // The paint program's TIFF tag is looked for without regard to the byte-order mark.
  const bool hasTiffVersion = head.size() >= 4 && head.substr(2, 2) == "\x2A\0"sv;
  return IsCompoundDocument(head) || hasBoxes || hasTiffVersion ||
         std::any_of(STARTS.begin(), STARTS.end(),
                     [head](std::string_view start) { return head.starts_with(start); });
}

}  // namespace typescout::catalogue
