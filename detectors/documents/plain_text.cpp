// Plain text, sorted by its line lengths and by its bytes beyond ASCII.
#include <algorithm>
#include <optional>
#include <string_view>

#include "core/probed_file.h"
#include "detectors/documents/documents.h"

namespace typescout {
namespace {

// OTHER is text with long lines, or with a byte above the highest letter.
enum class TextClass { NOT_TEXT, SEVEN_BIT, EIGHT_BIT, OTHER };

// Bytes that text does not hold: control characters other than tab, line feed, form feed and
// carriage return. Without a branch, so that the compiler can look at many bytes at once.
bool IsControl(std::uint8_t byte) {
  return (byte < ' ') & ((byte < '\t') | (byte > '\r') | (byte == '\v'));
}

// The highest byte of the text; nothing when it holds a control character.
std::optional<std::uint8_t> HighestByte(std::string_view text) {
  constexpr std::size_t BLOCK = 512;  // checked as a whole, so that other content is refused early
  std::uint8_t highest = 0;
  for (; !text.empty(); text.remove_prefix(std::min(BLOCK, text.size()))) {
    std::uint8_t controls = 0;
    for (const char c : text.substr(0, BLOCK)) {
      const auto byte = static_cast<std::uint8_t>(c);
      controls |= static_cast<std::uint8_t>(IsControl(byte));
      highest = std::max(highest, byte);
    }
    if (controls != 0) return std::nullopt;
  }
  return highest;
}

// Whether the lines are longer than 100 on the average. Only the pair CR LF ends one; the last pair
// stands as far from the start as all lines together are long.
bool HasLongLines(const ByteView& text) {
  constexpr ByteView::Position LONG_LINE = 100;
  ByteView::Position lines = 0;
  ByteView::Position lastEnd = 0;
  for (ByteView::Position at = text.Find('\r'); at != ByteView::NOT_FOUND;
       at = text.Find('\r', at + 1)) {
    if (text.U8(at + 1) != '\n') continue;
    ++lines;
    lastEnd = at;
  }
  return lines > 0 && lastEnd / lines > LONG_LINE;
}

TextClass Classify(ByteView text) {
  constexpr std::uint8_t END_OF_FILE = 0x1A;  // allowed as the last byte
  constexpr std::uint8_t HIGHEST_LETTER = 0xE1;
  if (text.size() == 0 || text.MatchesNoCase(0, "{\\rtf")) return TextClass::NOT_TEXT;
  if (text.U8(text.size() - 1) == END_OF_FILE) text = text.First(text.size() - 1);
  const std::optional<std::uint8_t> highest = HighestByte(text.Text());
  if (!highest) return TextClass::NOT_TEXT;
  if (*highest > HIGHEST_LETTER || HasLongLines(text)) return TextClass::OTHER;
  return *highest > 0x7F ? TextClass::EIGHT_BIT : TextClass::SEVEN_BIT;
}

// The class of the file, by its first bytes; NOT_TEXT when it cannot be read.
TextClass ClassifyPlainText(const ProbeContext* probe) {
  unsigned char buffer[5'000];
  return Classify(FileReader(probe).Read(buffer));
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
