// Plain text, sorted by its line lengths and by its bytes beyond ASCII.
#include <algorithm>

#include "detectors/documents/documents.h"
#include "host/owners.h"

namespace typescout {
namespace {

// The last three are what the filters 0x0902, 0x0903 and 0x0901 are for.
enum class TextClass { NOT_TEXT, SEVEN_BIT, EIGHT_BIT, OTHER };

// What text does not hold: control characters other than tab, line feed, form feed and carriage
// return.
bool IsForeign(std::uint8_t byte) {
  return byte < ' ' && byte != '\t' && byte != '\n' && byte != '\f' && byte != '\r';
}

// The class of the text. Only the pair CR LF ends a line.
TextClass Classify(ByteView text) {
  constexpr std::uint8_t END_OF_FILE = 0x1A;  // allowed as the last byte
  constexpr std::uint8_t HIGHEST_LETTER = 0xE1;
  constexpr ByteView::Position LONG_LINE = 100;
  if (text.size() == 0 || text.MatchesNoCase(0, "{\\rtf")) return TextClass::NOT_TEXT;
  std::uint8_t highest = 0;
  ByteView::Position lines = 0;
  ByteView::Position lastLineEnd = 0;  // as far from the start as all lines together are long
  const ByteView::Position last = text.size() - 1;
  for (ByteView::Position at = 0; at <= last; ++at) {
    const std::uint8_t byte = text.U8(at);
    if (IsForeign(byte) && !(byte == END_OF_FILE && at == last)) return TextClass::NOT_TEXT;
    highest = std::max(highest, byte);
    if (byte == '\r' && text.U8(at + 1) == '\n') {
      ++lines;
      lastLineEnd = at;
    }
  }
  if (highest > HIGHEST_LETTER) return TextClass::OTHER;
  if (lines > 0 && lastLineEnd / lines > LONG_LINE) return TextClass::OTHER;
  return highest > 0x7F ? TextClass::EIGHT_BIT : TextClass::SEVEN_BIT;
}

// The class of the file, by its first bytes; NOT_TEXT when it cannot be read.
TextClass ClassifyPlainText(const ProbeContext* probe) {
  FileOwner file;
  if (!file.Open(probe->path)) return TextClass::NOT_TEXT;
  unsigned char buffer[5'000];
  return Classify({buffer, file->Read(buffer, sizeof buffer)});
}

}  // namespace

std::int32_t DetectShortLineText(const ProbeContext* probe) {
  const TextClass textClass = ClassifyPlainText(probe);
  return textClass == TextClass::SEVEN_BIT || textClass == TextClass::EIGHT_BIT;
}

std::int32_t DetectAnyText(const ProbeContext* probe) {
  return ClassifyPlainText(probe) != TextClass::NOT_TEXT;
}

std::int32_t DetectSevenBitText(const ProbeContext* probe) {
  return ClassifyPlainText(probe) == TextClass::SEVEN_BIT;
}

}  // namespace typescout
