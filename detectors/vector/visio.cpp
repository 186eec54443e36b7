// Visio drawing: a header that names the program stands at the start of one of the first sectors.
#include "detectors/vector/vector.h"

namespace typescout {
namespace {

ByteView::Position FindHeader(ByteView head) {
  constexpr ByteView::Position SECTOR = 512;
  constexpr ByteView::Position SECTORS_SEARCHED = 32;
  for (ByteView::Position at = 0; at < SECTORS_SEARCHED * SECTOR; at += SECTOR) {
    if (head.Matches(at, "Visio (TM) Drawing\r\n")) return at;
  }
  return ByteView::NOT_FOUND;
}

}  // namespace

// The first header decides; later ones are ignored.
std::int32_t DetectVisio(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  if (head.size() < 540) return 0;
  const ByteView::Position header = FindHeader(head);
  if (header == ByteView::NOT_FOUND) return 0;
  switch (head.U32Le(header + 24)) {
    case 0x0002'0000:
      return 1;
    case 0x0003'0003:
    case 0x0004'0000:
    case 0x0005'0000:
    case 0x0006'0000:
      return head.U16Le(header + 34) == 1;
    default:
      return 0;
  }
}

}  // namespace typescout
