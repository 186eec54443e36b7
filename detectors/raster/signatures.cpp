// Raster formats recognised by a few bytes at fixed places, in registry order.
#include "detectors/container_headers.h"
#include "detectors/raster/raster.h"
#include "detectors/raster/windows_executable.h"

namespace typescout {
namespace {

// A "BM" file with this size of the header behind the 14-byte file header.
// Public source: the bitmap structures of the Windows SDK (BITMAPFILEHEADER and what follows it).
bool IsBitmap(const ByteView& head, std::uint32_t headerSize) {
  return head.size() >= 16 && head.Matches(0, "BM") && head.U32Le(14) == headerSize;
}

// The header of an icon (1) or cursor (2) file: a reserved word and the resource type.
// Public source: the icon resource format of the Windows SDK (NEWHEADER).
bool IsIconOrCursor(const ByteView& head, std::uint16_t type) {
  return head.U16Le(0) == 0 && head.U16Le(2) == type;
}

}  // namespace

// Windows bitmap, with the 40-byte BITMAPINFOHEADER.
std::int32_t DetectWindowsBitmap(const ProbeContext* probe) { return IsBitmap(Head(probe), 40); }

// OS/2 bitmap, with the header of OS/2 1.x (12 bytes) or 2.x (64 bytes).
std::int32_t DetectOs2Bitmap(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return IsBitmap(head, 64) || IsBitmap(head, 12);
}

// JPEG 2000: a JP2 file by its signature box, or a bare codestream by its SOC and SIZ markers.
// ITU-T T.800, annexes I.5.1 and A.4.
std::int32_t DetectJpeg2000(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  if (head.size() >= 14 && head.Matches(0, "\0\0\0\x0CjP  \r\n\x87\n")) return 1;
  return head.size() >= 6 && head.Matches(0, "\xFFO\xFFQ");
}

// Truevision TGA, which has no magic number: a colour-map type and an image type that exist.
// Truevision TGA File Format Specification, version 2.0.
std::int32_t DetectTarga(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  if (head.size() < 4) return 0;
  const std::uint8_t colourMapType = head.U8(1);
  const std::uint8_t imageType = head.U8(2);
  const bool isPlain = imageType >= 1 && imageType <= 3;
  const bool isRunLengthEncoded = imageType >= 9 && imageType <= 11;
  return colourMapType <= 1 && (isPlain || isRunLengthEncoded);
}

// PC Paintbrush: manufacturer 10, a version that exists (never 4), run-length encoding.
// ZSoft PCX File Format Technical Reference Manual.
std::int32_t DetectPcx(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  if (head.size() < 3 || head.U8(0) != 10) return 0;
  const std::uint8_t version = head.U8(1);
  return (version == 0 || version == 2 || version == 3 || version == 5) && head.U8(2) == 1;
}

// Scitex CT: the control block's file type, and fields of the parameter block that are small.
// Scitex Handshake Format Specifications.
std::int32_t DetectScitexCt(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return head.size() >= 1081 && head.Matches(80, "CT") && head.U8(1024) <= 1 &&
         head.U8(1027) <= 15 && head.U8(1080) <= 7;
}

// Windows cursor, or an executable that may hold cursors.
std::int32_t DetectCursorResource(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return IsIconOrCursor(head, 2) || IsWindowsExecutable(head);
}

// Windows icon, or an executable that may hold icons.
std::int32_t DetectIconResource(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return IsIconOrCursor(head, 1) || IsWindowsExecutable(head);
}

// An executable that may hold bitmaps.
std::int32_t DetectExecutableResource(const ProbeContext* probe) {
  return IsWindowsExecutable(Head(probe));
}

// Adobe Photoshop File Formats Specification, file header section.
std::int32_t DetectPhotoshop(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return head.size() >= 5 && head.Matches(0, "8BPS");
}

std::int32_t DetectFilter0320(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return head.size() >= 9 && head.Matches(0, "srcdocid");
}

// Portable Network Graphics. W3C PNG, section 5.2.
std::int32_t DetectPng(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return head.size() >= 8 && head.Matches(0, "\x89PNG\r\n\x1A\n");
}

// WebP, a RIFF form. RFC 9649, section 2.4.
std::int32_t DetectWebP(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return head.size() >= 13 && IsRiff(head) && head.Matches(RIFF_FORM_TYPE, "WEBP");
}

// A version word of 2 and, at 40, the big-endian single-precision number 1.8.
std::int32_t DetectFilter0327(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return head.size() >= 44 && head.U16Be(0) == 2 && head.Matches(40, "\x3F\xE6\x66\x66");
}

// X PixMap, version 3. The XPM manual (A. Le Hors).
std::int32_t DetectXpm(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return head.size() >= 9 && head.Matches(0, "/* XPM */");
}

// GIMP's native image; the space begins its version. "Documentation of the XCF file format".
std::int32_t DetectGimpXcf(const ProbeContext* probe) {
  return Head(probe).Matches(0, "gimp xcf ");
}

// Netpbm bitmap, greymap or pixmap, plain or raw. The manual pages pbm(5), pgm(5), ppm(5).
std::int32_t DetectPortableAnymap(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return head.U8(0) == 'P' && head.U8(1) >= '1' && head.U8(1) <= '6';
}

// GEM bit image: a big-endian header of 8 words, or of 9, whose last word is then looked at.
// D. Clunie, "Digital Research GEM bit image format", in the Graphics File Formats FAQ.
std::int32_t DetectGemImage(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  if (head.size() < 18 || head.U16Be(0) != 1 || head.U8(6) != 0) return 0;
  const std::uint16_t headerWords = head.U16Be(2);
  if (headerWords == 8) return 1;
  const std::uint8_t high = head.U8(16);
  return headerWords == 9 && (high == 0 || (high & 0x80) != 0) && head.U8(17) <= 3;
}

}  // namespace typescout
