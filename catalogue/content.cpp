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
  struct Mark {
    std::size_t offset;
    std::string_view bytes;
  };
  constexpr auto MARKS = std::to_array<Mark>({
      {0, "GIF8"sv},
      {0, "%PDF-"sv},
      {0, "II"sv},  // TIFF and the camera raw formats made of it
      {0, "MM"sv},
      {2, "*\0"sv},  // the paint program's TIFF tag is looked for with any byte-order mark
      // The other camera raw formats; modules/camera_raw/beginnings.cpp names them.
      {0, "FUJIFILMCCD-RAW "sv},
      {0, "\0MRM"sv},
      {0, "FOVb"sv},
      {4, "ftypcrx "sv},
      {0, "CI,\0"sv},
      {0, "ARRI"sv},
      {0, "qktk\0"sv},
      {0, "qktn\0"sv},
      {25, "ARECOYK"sv},
      {0, "NOKIARAW"sv},
      {0, "\0\1\0\1\0@"sv},
      {0, "XPDS"sv},
      {0, "DSC-Image"sv},
      {0, "PWAD"sv},
      {0, "PXN\0"sv},
  });
  const auto isThere = [head](const Mark& mark) {
    return head.size() >= mark.offset && head.substr(mark.offset).starts_with(mark.bytes);
  };
  return IsCompoundDocument(head) || std::any_of(MARKS.begin(), MARKS.end(), isThere);
}

}  // namespace typescout::catalogue
