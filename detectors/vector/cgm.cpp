// Computer Graphics Metafile, in the binary encoding (ISO/IEC 8632-3, clause 5), the clear-text one
// (ISO/IEC 8632-4) or the character one (ISO/IEC 8632-2).
#include "detectors/vector/vector.h"

namespace typescout {
namespace {

// The first word of an element holds its class, its identifier within the class and the length of
// its parameters.
struct ElementHeader {
  int elementClass;  // 0 to 15
  int id;            // 0 to 127
  ByteView::Position size;
  ByteView::Position parameterBytes;  // with the byte that pads them to an even length
};

ElementHeader ReadHeader(ByteView head, ByteView::Position at) {
  constexpr int LONG_FORM = 31;  // the length stands in the next word
  const int word = head.U16Be(at);
  const int length = word & 0x1F;
  const bool isLong = length == LONG_FORM;
  const ByteView::Position parameterBytes = isLong ? head.U16Be(at + 2) : length;
  return {.elementClass = word >> 12,
          .id = word >> 5 & 0x7F,
          .size = isLong ? 4 : 2,
          .parameterBytes = parameterBytes + parameterBytes % 2};
}

bool Is(const ElementHeader& element, int elementClass, int id) {
  return element.elementClass == elementClass && element.id == id;
}
bool IsBeginMetafile(const ElementHeader& element) { return Is(element, 0, 1); }
bool IsBeginPicture(const ElementHeader& element) { return Is(element, 0, 3); }
bool IsMetafileVersion(const ElementHeader& element) { return Is(element, 1, 1); }

// Delimiters (class 0), metafile descriptors (1), escapes (6) and external elements (7). The other
// classes describe or draw a picture.
bool MayPrecedePicture(const ElementHeader& element) {
  return element.elementClass <= 1 || element.elementClass == 6 || element.elementClass == 7;
}

// Walks on from BEGIN METAFILE, whose header is `element`, to an element that decides. True when
// the head ends before.
bool WalkElements(ByteView head, ElementHeader element) {
  ByteView::Position at = 0;
  for (;;) {
    at += element.size + element.parameterBytes;
    if (at >= head.size() - 4) return true;
    element = ReadHeader(head, at);
    if (IsBeginPicture(element) || IsMetafileVersion(element)) return true;
    if (!MayPrecedePicture(element)) return false;
  }
}

bool OpensClearText(ByteView head) {
  const std::size_t keyword = head.Text().find_first_not_of(' ');
  return keyword != std::string_view::npos &&
         head.MatchesNoCase(static_cast<ByteView::Position>(keyword), "BEGMF");
}

// The character encoding: the opcode of BEGIN METAFILE and a first byte that its parameter may
// have.
bool OpensCharacterEncoding(ByteView head) {
  const std::uint8_t third = head.U8(2);
  return head.Matches(0, "0 ") && (third == 0x7E || third == 0x1B || third == 0x9C);
}

}  // namespace

std::int32_t DetectCgm(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  if (head.size() < 4) return 0;
  const ElementHeader first = ReadHeader(head, 0);
  if (IsBeginMetafile(first)) return WalkElements(head, first);
  return OpensClearText(head) || OpensCharacterEncoding(head);
}

}  // namespace typescout
