// Plotter files in HP-GL or HP-GL/2, bare or wrapped in PCL escape sequences or a PJL job.
//
// There is no signature. The first 1,024 bytes are walked as instructions (two letters and their
// parameters) and escape sequences, up to an instruction that plots begin with.
// Hewlett-Packard: "The HP-GL/2 and HP RTL Reference Guide", chapters 2 and 6; "PCL 5 Printer
// Language Technical Reference Manual", chapter 2; "Printer Job Language Technical Reference
// Manual", chapter 2.
#include <array>
#include <optional>
#include <string_view>

#include "detectors/container_headers.h"
#include "detectors/postscript/postscript.h"

namespace typescout {
namespace {

using Position = ByteView::Position;

constexpr Position SCAN_LIMIT = 1024;
constexpr std::uint8_t ETX = 0x03;
constexpr std::uint8_t XON = 0x11;
constexpr std::uint8_t ESC = 0x1B;

constexpr std::string_view MNEMONICS =
    "AA AC AD AF AH AP AR AS AT BL BP CA CC CF CI CM CP CR CS CT CV DC DF DI DL DP DR DS DT DV "
    "EA EC EP ER ES EW FI FN FP FR FS FT GC GM GP IM IN IP IR IV IW KY LA LB LO LT MC MG MT NP "
    "NR OA OC OD OE OF OG OH OI OK OL OO OP OS OT OW PA PB PC PD PE PG PM PR PS PT PU PW QL RA "
    "RF RO RP RR RT SA SB SC SD SG SI SL SM SP SR SS ST SV TD TL TR UC UF UL VS WD WG WU XT YT ";
constexpr std::size_t MNEMONIC_COUNT = 120;
static_assert(MNEMONICS.size() == MNEMONIC_COUNT * 3);

constexpr std::size_t LETTERS = 26;
constexpr std::size_t PairIndex(char first, char second) {
  return static_cast<std::size_t>(first - 'A') * LETTERS + static_cast<std::size_t>(second - 'A');
}
constexpr auto IS_MNEMONIC = [] {
  std::array<bool, LETTERS* LETTERS> table = {};
  for (std::size_t at = 0; at < MNEMONICS.size(); at += 3) {
    table[PairIndex(MNEMONICS[at], MNEMONICS[at + 1])] = true;
  }
  return table;
}();

// A mnemonic in capitals, its first letter in the high byte.
constexpr std::uint16_t Pair(std::uint8_t first, std::uint8_t second) {
  return static_cast<std::uint16_t>(first << 8 | second);
}

bool IsMnemonic(std::uint16_t pair) {
  const auto first = static_cast<std::uint8_t>(pair >> 8);
  const auto second = static_cast<std::uint8_t>(pair);
  return IsAsciiUpper(first) && IsAsciiUpper(second) &&
         IS_MNEMONIC[PairIndex(static_cast<char>(first), static_cast<char>(second))];
}

bool IsOneOf(std::uint8_t byte, std::string_view bytes) {
  return bytes.find(static_cast<char>(byte)) != std::string_view::npos;
}

bool IsSeparator(std::uint8_t byte) { return IsOneOf(byte, "\x03\n\r\x1A ,;"); }

class HpglWalk {
 public:
  explicit HpglWalk(ByteView head) : head_(head), scanned_(head.First(SCAN_LIMIT)) {}

  bool IsPlot() {
    // An XON and the byte behind it are no instruction.
    if (head_.U8(0) == XON) at_ = 2;
    Step step = Step::GO_ON;
    while (step == Step::GO_ON && at_ < Limit()) step = TakeStep();
    return step == Step::YES;
  }

 private:
  enum class Step { GO_ON, YES, NO };

  Position Limit() const { return scanned_.size(); }

  Step TakeStep() {
    while (at_ < Limit() - 2 && IsSeparator(head_.U8(at_))) ++at_;
    if (at_ > Limit() - 3) return Step::NO;
    if (head_.U8(at_) != ESC) return TakeInstruction();
    at_ += EscapeLength();
    return Step::GO_ON;
  }

  Step TakeInstruction() {
    const std::uint16_t mnemonic =
        Pair(ToUpperAscii(head_.U8(at_)), ToUpperAscii(head_.U8(at_ + 1)));
    at_ += 2;
    switch (mnemonic) {
      case Pair('D', 'F'):
        return Step::GO_ON;
      case Pair('D', 'T'):
        if (head_.U8(at_) != ';') ++at_;  // the new label terminator
        return Step::GO_ON;
      case Pair('I', 'N'):
        if (head_.U8(at_) == ';' || head_.Matches(at_, "SP1")) return Step::YES;
        initialized_ = true;
        return Step::GO_ON;
      case Pair('L', 'B'):
        return SkipTo(scanned_.Find(ETX, at_), 1);
      case Pair('P', 'E'):
        return SkipTo(scanned_.Find(';', at_), 0);
      case Pair('S', 'P'):
        return SelectPen();
      default:
        return IsMnemonic(mnemonic) ? SkipParameters() : AnswerToUnknown();
    }
  }

  Step SkipTo(Position found, Position behind) {
    if (found == ByteView::NOT_FOUND) return Step::NO;
    at_ = found + behind;
    return Step::GO_ON;
  }

  Step SelectPen() {
    if (head_.Matches(at_, "1;")) return Step::YES;
    if (head_.U8(at_) == ' ') ++at_;
    const std::uint8_t pen = head_.U8(at_);
    if (initialized_ && pen >= '1' && pen <= '8') return Step::YES;
    ++at_;
    return Step::GO_ON;
  }

  Step SkipParameters() {
    for (; at_ < Limit(); ++at_) {
      const std::uint8_t byte = head_.U8(at_);
      if (IsAsciiLetter(byte) || byte == ESC) return Step::GO_ON;
      if (head_.U8(at_ + 1) == ';') {
        ++at_;
        return Step::GO_ON;
      }
    }
    return Step::NO;
  }

  // PostScript and PJL jobs hold words that are no instructions.
  Step AnswerToUnknown() const { return OpensPrinterJob(head_) ? Step::YES : Step::NO; }

  // The length of the escape sequence at `at_`; not less than the bytes that are left when it does
  // not end.
  Position EscapeLength() const {
    const Position left = Limit() - at_;
    const std::uint8_t first = head_.U8(at_ + 1);
    const std::uint8_t second = head_.U8(at_ + 2);
    if (IsOneOf(second, "(ABEJKLORUYZ")) return head_.U8(at_ + 4) == ';' ? 4 : 3;
    if (second == ')') return LengthUpTo("\x1B", 3).value_or(left);
    if (IsOneOf(second, "@HIMNT")) return LengthUpTo(":", 3).value_or(left) + 1;
    if (IsOneOf(second, "PQS")) return NumberedLength(left);
    if (first == '%' && second == '-') return head_.U8(at_ + 8) == 'X' ? 9 : 5;
    if (first == '%') return 4;
    if (first == '&') return 5;
    if (first == '*') return LengthUpTo("TY", 2).value_or(left) + 1;
    return 2;
  }

  // The distance from `at_` to the first of these bytes that is at least `from` bytes on.
  std::optional<Position> LengthUpTo(std::string_view bytes, Position from) const {
    const std::size_t hit =
        scanned_.Text().find_first_of(bytes, static_cast<std::size_t>(at_ + from));
    if (hit == std::string_view::npos) return std::nullopt;
    return static_cast<Position>(hit) - at_;
  }

  Position NumberedLength(Position left) const {
    Position digits = 0;
    while (3 + digits <= left && IsAsciiDigit(head_.U8(at_ + 3 + digits))) ++digits;
    return 2 + digits + (head_.U8(at_ + 3 + digits) == ';' ? 1 : 0);
  }

  ByteView head_;
  ByteView scanned_;  // instructions start here; their bytes may lie behind it
  Position at_ = 0;
  bool initialized_ = false;  // an IN has been met
};

}  // namespace

std::int32_t DetectHpgl(const ProbeContext* probe) { return HpglWalk(Head(probe)).IsPlot(); }

}  // namespace typescout
