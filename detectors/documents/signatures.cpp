// Document formats recognised by a few bytes, in registry order.
//
// A signature that ends in a byte other than 0 needs no length test: bytes beyond the head read as
// 0. Some rows demand a longer file than their signature takes.
#include "detectors/documents/documents.h"

namespace typescout {

std::int32_t DetectFilter0802(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return head.size() >= 512 && head.Matches(0, "\xDB\xA5\x2D\0");
}

std::int32_t DetectFilter0803(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return head.size() >= 256 && head.Matches(0, "1\xBE\0\0\0") && head.U16Le(96) == 0;
}

std::int32_t DetectFilter0804(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return head.size() >= 40 && head.Matches(0, "\xFE\x37") &&
         (head.Matches(20, "\0\0\x01\0") || head.Matches(20, "\0\0\x02\0"));
}

// Rich Text Format. Microsoft, RTF Specification 1.9.1.
std::int32_t DetectRtf(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return head.size() >= 10 && head.MatchesNoCase(0, "{\\rtf");
}

std::int32_t DetectFilter080B(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return head.size() >= 11 && head.Matches(0, "# VV # 5.0");
}

// A header of 128 bytes between two frames.
std::int32_t DetectFilter080C(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return head.Matches(0, "\x1D}\0\0p") && head.Matches(125, "}\0\x1D");
}

std::int32_t DetectWs2000(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return head.size() >= 10 && head.Matches(2, "WS2000");
}

// A "[ver]" line, then a line of a tab and the digit 4. Lines end in CR LF, CR CR LF or LF; with CR
// LF any four bytes may come first.
std::int32_t DetectVerHeader(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return head.size() >= 15 &&
         (head.Matches(0, "[ver]\r\n\t4\r\n") || head.Matches(0, "[ver]\r\r\n\t4\r\r\n") ||
          head.Matches(4, "[ver]\r\n\t4\r\n") || head.Matches(0, "[ver]\n\t4\n"));
}

// A leading record, of one of two kinds.
std::int32_t DetectFilter0812(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  if (head.size() < 30) return 0;
  const std::uint8_t kind = head.U8(4);
  if (head.Matches(0, "\0\0\x02\0")) return kind >= 0x04 && kind <= 0x0B && head.U8(5) == 0x04;
  return head.Matches(0, "\0\0\x1A\0") && (kind == 0x00 || kind == 0x02) &&
         head.Matches(5, "\x10\x04\0") && head.U8(20) == 0x01;
}

}  // namespace typescout
