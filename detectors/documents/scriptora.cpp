// Documents of the word-processor family: plain files and, from newer versions, compound documents.
#include "detectors/documents/documents.h"
#include "detectors/documents/scriptora_header.h"
#include "detectors/stream_read.h"

namespace typescout {
namespace {

bool IsDocument(ByteView bytes, std::uint8_t majorVersion) {
  return HasScriptoraHeader(bytes, ScriptoraType::DOCUMENT) && bytes.U8(10) == majorVersion;
}

std::uint8_t MinorVersion(ByteView bytes) { return bytes.U8(11); }

}  // namespace

// The product's versions 6 to 8. Only 7 and 8 write compound documents.
std::int32_t DetectScriptora0807(const ProbeContext* probe) {
  unsigned char buffer[SCRIPTORA_HEADER_SIZE];
  const ByteView stream = ReadStream(probe->storage, SCRIPTORA_MAIN_STREAM, buffer);
  if (IsDocument(stream, 2) && (MinorVersion(stream) == 2 || MinorVersion(stream) == 4)) return 1;
  const ByteView head = Head(probe);
  return IsDocument(head, 2) && MinorVersion(head) <= 4;
}

std::int32_t DetectScriptora0808(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return IsDocument(head, 0) && MinorVersion(head) == 1;
}

std::int32_t DetectScriptora0809(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return IsDocument(head, 0) && MinorVersion(head) == 0;
}

// A leading record names one of three kinds. A fourth kind stands in the main stream of a compound
// document that begins with the same record.
std::int32_t DetectFilter0813(const ProbeContext* probe) {
  constexpr ByteView::Position LEAST_SIZE = 10;
  constexpr ByteView::Position KIND = 4;
  const ByteView head = Head(probe);
  if (head.size() < LEAST_SIZE || !head.Matches(0, "\0\0\x02\0")) return 0;
  if (head.Matches(KIND, " Q") || head.Matches(KIND, "\x01\x10") ||
      head.Matches(KIND, "\x02\x10")) {
    return 1;
  }
  const ScriptoraStream stream(probe);
  return stream.Bytes().size() >= LEAST_SIZE && stream.Bytes().Matches(KIND, "\x07\x10");
}

}  // namespace typescout
