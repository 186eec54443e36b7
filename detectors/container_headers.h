// Headers that formats of several families open with.
#ifndef TYPESCOUT_DETECTORS_CONTAINER_HEADERS_H
#define TYPESCOUT_DETECTORS_CONTAINER_HEADERS_H

#include "core/byte_view.h"

namespace typescout {

// Resource Interchange File Format: "RIFF", the size of what follows, and the form type, which
// names the format. Microsoft and IBM, "Multimedia Programming Interface and Data Specifications
// 1.0", chapter 2.
inline constexpr ByteView::Position RIFF_HEADER_SIZE = 12;
inline constexpr ByteView::Position RIFF_FORM_TYPE = 8;
inline bool IsRiff(ByteView head) {
  return head.size() >= RIFF_HEADER_SIZE && head.Matches(0, "RIFF");
}

// MacBinary, which carries a Macintosh file's type and creator along. "MacBinary II Standard".
inline constexpr ByteView::Position MAC_BINARY_SIZE = 128;
inline constexpr ByteView::Position MAC_BINARY_TYPE = 65;
inline constexpr ByteView::Position MAC_BINARY_CREATOR = 69;

// DOS EPS binary file: the places of the PostScript text and of a preview picture. Adobe Technical
// Note 5002, "Encapsulated PostScript File Format Specification", 5.2.
inline constexpr char DOS_EPS_MAGIC[] = "\xC5\xD0\xD3\xC6";

// A printer job that opens with a Ctrl-D (the end of the job before it) or, behind any one byte
// (ESC, as a rule), with the universal exit of the Printer Job Language. Hewlett-Packard, "Printer
// Job Language Technical Reference Manual", chapter 2.
inline bool OpensPrinterJob(ByteView head) {
  return head.U8(0) == 0x04 || head.Matches(1, "%-12345");
}

}  // namespace typescout

#endif  // TYPESCOUT_DETECTORS_CONTAINER_HEADERS_H
