// MacPaint, bare or behind a 128-byte MacBinary header: a 512-byte header, then scan lines of 576
// one-bit pixels packed by PackBits. There is no magic number; the first scan line has to be
// well-formed. Apple, "MacPaint Documents" (Macintosh Technical Note PT24) and TN1023 (PackBits).
#include "detectors/container_headers.h"
#include "detectors/raster/raster.h"

namespace typescout {

std::int32_t DetectMacPaint(const ProbeContext* probe) {
  constexpr int BYTES_A_LINE = 72;
  constexpr ByteView::Position HEADER = 512;

  const ByteView head = Head(probe);
  if (head.size() < 70 || head.U8(0) != 0) return 0;
  const bool isWrapped = head.Matches(MAC_BINARY_TYPE, "PNTG");
  ByteView::Position at = isWrapped ? MAC_BINARY_SIZE + HEADER : HEADER;

  int decoded = 0;
  bool wasLiteral = false;
  while (decoded < BYTES_A_LINE) {
    const int packet = head.U8(at);
    const bool isLiteral = packet < 0x80;
    if (isLiteral && wasLiteral) return 0;  // a packer writes one literal for both
    const int length = isLiteral ? packet + 1 : 257 - packet;
    decoded += length;
    at += isLiteral ? 1 + length : 2;
    wasLiteral = isLiteral;
  }
  return decoded == BYTES_A_LINE;
}

}  // namespace typescout
