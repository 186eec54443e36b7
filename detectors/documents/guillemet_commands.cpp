// Text with commands of two capital letters between the bytes 0xAE and 0xAF (« and » in code page
// 437).
#include <algorithm>
#include <string_view>

#include "detectors/documents/documents.h"

namespace typescout {
namespace {

using Position = ByteView::Position;

constexpr std::uint8_t OPENING = 0xAE;
constexpr std::uint8_t CLOSING = 0xAF;
constexpr int ENOUGH = 2;  // signs of commands

// Where the next command starts at or behind `at` and before `limit`: the opening byte and two
// capital letters; NOT_FOUND when there is none.
Position NextCommand(ByteView head, Position at, Position limit) {
  constexpr Position LENGTH = 3;
  // Commands that follow one another closely are found here: a search would cost more for each.
  constexpr Position NEAR = 16;
  for (const Position end = std::min(at + NEAR, limit); at < end; ++at) {
    if (head.U8(at) == OPENING && IsAsciiUpper(head.U8(at + 1)) && IsAsciiUpper(head.U8(at + 2))) {
      return at;
    }
  }
  const Position distance = head.First(limit + LENGTH - 1)
                                .From(at)
                                .FindSequence(OPENING, LENGTH, [](Position, std::uint8_t byte) {
                                  return IsAsciiUpper(byte);
                                });
  return distance == ByteView::NOT_FOUND ? distance : at + distance;
}

// The command TS takes parameters: how many of the six bytes behind its letters, as far as they lie
// before `limit`, are commas or closing bytes.
int CountSeparators(ByteView head, Position command, Position limit) {
  if (!head.Matches(command + 1, "TS")) return 0;
  const std::string_view behind = head.First(limit).From(command + 3).First(6).Text();
  return static_cast<int>(std::count_if(behind.begin(), behind.end(), [](char c) {
    return c == ',' || static_cast<std::uint8_t>(c) == CLOSING;
  }));
}

}  // namespace

// The text ends at the first zero byte and has at least three bytes; commands are searched for
// behind that byte too. Positions are 16-bit numbers that wrap, which matters for heads of more
// than 64 KiB (a caller may pass such a head).
//
// When the text has a closing byte behind its first opening byte, every command counts as a sign.
// Only this first closing byte is used. A command then also moves the position by the distance
// between these two bytes, modulo 65,536; the second command ends the loop.
std::int32_t DetectGuillemetCommands(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  const Position opening = head.Find(OPENING);
  if (opening == ByteView::NOT_FOUND) return 0;  // as most files
  const Position zero = head.Find(0);
  const ByteView text = zero == ByteView::NOT_FOUND ? head : head.First(zero);
  if (text.size() < 3 || opening >= text.size()) return 0;
  const Position closing = text.Find(CLOSING, opening);

  const auto limit = static_cast<std::uint16_t>(head.size() - 2);
  auto at = static_cast<std::uint16_t>(opening);
  for (int count = 0; count < ENOUGH;) {
    const Position command = NextCommand(head, at, limit);
    if (command == ByteView::NOT_FOUND) return 0;
    count += CountSeparators(head, command, limit);
    at = static_cast<std::uint16_t>(command + 1);
    if (closing == ByteView::NOT_FOUND) continue;
    at = static_cast<std::uint16_t>(at + closing - opening);
    ++count;
  }
  return 1;
}

}  // namespace typescout
