// Vector formats recognised by a few bytes, in registry order.
//
// A signature that ends in a byte other than 0 needs no length test: bytes beyond the head read as
// 0.
#include "detectors/container_headers.h"
#include "detectors/documents/scriptora_header.h"
#include "detectors/stream_read.h"
#include "detectors/vector/vector.h"
#include "host/path.h"

namespace typescout {

// Graphics of the word-processor family, plain or as a compound document.
std::int32_t DetectScriptoraGraphics(const ProbeContext* probe) {
  return HasScriptoraHeader(Head(probe), ScriptoraType::GRAPHICS) ||
         HasScriptoraHeader(ScriptoraStream(probe).Bytes(), ScriptoraType::GRAPHICS);
}

// Windows metafile, placeable or standard. [MS-WMF] 2.3.2.3 and 2.3.2.2.
std::int32_t DetectWindowsMetafile(const ProbeContext* probe) {
  constexpr std::uint8_t MEMORY_METAFILE = 0x01;
  constexpr std::uint8_t DISK_METAFILE = 0x02;
  constexpr std::uint16_t HEADER_WORDS = 9;
  const ByteView head = Head(probe);
  if (head.size() < 44) return 0;
  if (head.Matches(0, "\xD7\xCD\xC6\x9A")) return 1;
  return (head.U8(0) == MEMORY_METAFILE || head.U8(0) == DISK_METAFILE) && head.U8(1) == 0 &&
         head.U16Le(2) == HEADER_WORDS;
}

// Four bytes followed by their complements.
std::int32_t DetectFilter0540(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  if (head.size() < 8) return 0;
  for (ByteView::Position i = 0; i < 4; ++i) {
    if ((head.U8(i) ^ head.U8(i + 4)) != 0xFF) return 0;
  }
  return 1;
}

std::int32_t DetectFilter0504(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return head.size() >= 8 && head.Matches(0, "\xFF\xFF") && (head.U8(6) == 0 || head.U8(6) == 2);
}

std::int32_t DetectFilter0502(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return head.Matches(0, "\x01\xFF") && head.Matches(3, "\x04\x03") &&
         (head.U8(7) == 1 || head.U8(7) == 2);
}

std::int32_t DetectFilter050B(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return head.size() >= 2'000 && head.Matches(2, "\xD3\xA8\xA8");
}

// Macintosh picture: the version opcode follows an application header of 512 bytes, the picture's
// size and its frame; a MacBinary header of 128 bytes may stand before all of it. Inside Macintosh:
// Imaging With QuickDraw, appendix A.
std::int32_t DetectPict(const ProbeContext* probe) {
  constexpr ByteView::Position VERSION = 512 + 2 + 8;
  const ByteView head = Head(probe);
  // MacBinary opens with a zero byte and the length of the file's name.
  const bool isMacBinary = head.U8(0) == 0 && head.U8(1) != 0;
  const ByteView::Position version = isMacBinary ? MAC_BINARY_SIZE + VERSION : VERSION;
  return head.Matches(version, "\x00\x11\x02\xFF") || head.Matches(version, "\x11\x01");
}

// Enhanced metafile. [MS-EMF] 2.3.4.2.
std::int32_t DetectEnhancedMetafile(const ProbeContext* probe) {
  return Head(probe).Matches(40, " EMF");
}

// The suite's own metafile.
std::int32_t DetectTavonMetafile(const ProbeContext* probe) {
  return Head(probe).Matches(0, "@TavonMF");
}

// Publisher document. By its name alone when it is not a compound document.
std::int32_t DetectPublisher(const ProbeContext* probe) {
  if (probe->path == nullptr) return 0;
  const TvnPlatform::TvnStringT<wchar_t> extension = SystemIO::Path::GetUpperExtension(probe->path);
  if (extension.View() != L".PUB") return 0;
  if (probe->storage == nullptr) return 1;
  unsigned char opening[2];
  return ReadStream(probe->storage, L"Contents", opening).Matches(0, "\xE8\xAC");
}

std::int32_t DetectHgb3(const ProbeContext* probe) { return Head(probe).Matches(0, "HGB3"); }

std::int32_t DetectFilter0536(const ProbeContext* probe) {
  return Head(probe).Matches(0, "\x01\0\0\0\x01\0\x08\0D\0\0\0\0\x0C\x7F\x09\x06");
}

// Scalable Vector Graphics: the opening of its root element, near the start. W3C SVG 1.1, 5.1.
std::int32_t DetectSvg(const ProbeContext* probe) {
  constexpr ByteView::Position SEARCHED = 2'048;
  return Head(probe).First(SEARCHED).Find("<svg") != ByteView::NOT_FOUND;
}

// AutoCAD drawing of the versions AC1000 to AC1029.
std::int32_t DetectDwg(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return head.Matches(0, "AC10") && head.U8(4) >= '0' && head.U8(4) <= '2' &&
         IsAsciiDigit(head.U8(5));
}

std::int32_t DetectMakerVector(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return head.size() >= 20 && head.MatchesNoCase(1, "MakerVector");
}

std::int32_t DetectOpsHeader(const ProbeContext* probe) { return Head(probe).Matches(0, "<!OPS,"); }

}  // namespace typescout
