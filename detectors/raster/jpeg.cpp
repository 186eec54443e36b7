// JPEG (ITU-T T.81, annex B) and TIFF (Adobe TIFF 6.0, section 2), which share the TIFF header: the
// JPEG filter reads TIFF files too.
#include "detectors/raster/raster.h"

namespace typescout {
namespace {

using Position = ByteView::Position;

bool IsTiffHeader(const ByteView& head) {
  return head.Matches(0, "II*\0") || head.Matches(0, "MM\0*");
}

// The suite's charting program puts its name right behind the TIFF header.
bool IsCharting(const ByteView& head) { return head.Matches(8, "TavonGRAPH"); }

// The marker codes that the walk knows (those from RST0 to EOI stand alone).
enum Marker : std::uint8_t {
  TEM = 0x01,
  SOF0 = 0xC0,  // baseline frame
  SOF2 = 0xC2,  // progressive frame
  DHT = 0xC4,
  DAC = 0xCC,
  RST0 = 0xD0,
  SOI = 0xD8,
  EOI = 0xD9,
  SOS = 0xDA,
  DQT = 0xDB,
  DNL = 0xDC,
  DRI = 0xDD,
  DHP = 0xDE,
  EXP = 0xDF,
  APP0 = 0xE0,
  APP14 = 0xEE,
  COM = 0xFE,
};

// The distance from the marker at `at` to the next, or 0 for a marker that ends the walk. The
// length field of a segment of fixed size is ignored.
Position DistanceToNext(const ByteView& head, Position at) {
  const std::uint8_t code = head.U8(at + 1);
  if (code == TEM || (code >= RST0 && code <= EOI)) return 2;
  if (code == EXP) return 5;
  if (code == DNL || code == DRI) return 6;
  if (code == DHT || code == DAC || code == SOS || code == DQT || code == DHP ||
      (code >= APP0 && code <= APP14) || code == COM) {
    return 2 + head.U16Be(at + 2);
  }
  return 0;
}

// Walks the markers up to the frame header, which decides.
bool IsJpegStream(const ByteView& head) {
  bool hasStarted = false;
  Position at = 0;
  do {
    if (head.U8(at) != 0xFF) return false;
    const std::uint8_t code = head.U8(at + 1);
    if (code == SOF0) {
      const std::uint8_t components = head.U8(at + 9);
      return hasStarted && (components == 1 || components == 3 || components == 4);
    }
    if (code == SOF2) return true;
    if (code == SOI) hasStarted = true;
    if (code == EOI) hasStarted = false;
    const Position distance = DistanceToNext(head, at);
    if (distance == 0) return false;
    at += distance;
  } while (at < head.size());
  return false;
}

}  // namespace

std::int32_t DetectJpeg(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return IsTiffHeader(head) ? !IsCharting(head) : IsJpegStream(head);
}

std::int32_t DetectTiff(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return IsTiffHeader(head) && !IsCharting(head) && !head.Matches(8, "3DF.");
}

}  // namespace typescout
