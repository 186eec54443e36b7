// A stream of records, recognised by its opening groups.
#include "detectors/vector/vector.h"

namespace typescout {
namespace {

// A position in a run of records. A record is a type byte, a length byte and as many bytes as that
// byte gives.
class RecordWalk {
 public:
  explicit RecordWalk(ByteView head) : head_(head) {}

  // These compare bytes 0 (type), 2 (subtype) and 3 (mark) of the record at the position.
  bool HasKind(std::uint8_t type, std::uint8_t subtype) const {
    return head_.U8(at_) == type && head_.U8(at_ + 2) == subtype;
  }
  bool HasMark(std::uint8_t mark) const { return head_.U8(at_ + 3) == mark; }
  bool Is(std::uint8_t type, std::uint8_t subtype, std::uint8_t mark) const {
    return HasKind(type, subtype) && HasMark(mark);
  }

  bool OpensThirdGroup() const { return head_.Matches(at_, "\x02\x02\x02\x7E"); }

  void PassRecord() { at_ += 2 + head_.U8(at_ + 1); }
  void PassMark() { at_ += 4; }
  // Stops at the end of the head at the latest, since zeros follow it.
  void PassFillers() {
    constexpr std::uint8_t FILLER = 0x01;
    while (head_.U8(at_) == FILLER) PassRecord();
  }

  // Whether fewer than three bytes are left: too few for a record that counts.
  bool IsAtEnd() const { return at_ > head_.size() - 3; }
  bool IsBeyondEnd() const { return at_ > head_.size(); }
  bool IsAtOrBeyondEnd() const { return at_ >= head_.size(); }

 private:
  ByteView head_;
  ByteView::Position at_ = 0;
};

constexpr std::uint8_t GROUP = 0x02;  // the type of the records that count
constexpr std::uint8_t OPEN = 0x7E;
constexpr std::uint8_t CLOSE = 0x7F;

// Passes the first group if it starts here: an opening mark, then records up to the closing mark.
// False when another record is among them; the end of the head is no such record.
bool PassFirstGroup(RecordWalk* walk) {
  constexpr std::uint8_t SUBTYPE = 0x01;
  if (!walk->Is(GROUP, SUBTYPE, OPEN)) return true;
  walk->PassMark();
  while (!walk->IsAtOrBeyondEnd()) {
    if (!walk->HasKind(GROUP, SUBTYPE)) return false;
    const bool isLast = walk->HasMark(CLOSE);
    walk->PassRecord();
    if (isLast) break;
  }
  return true;
}

// The same of the second group, which holds one record between its marks.
bool PassSecondGroup(RecordWalk* walk) {
  constexpr std::uint8_t SUBTYPE = 0x04;
  if (!walk->Is(GROUP, SUBTYPE, OPEN)) return true;
  walk->PassMark();
  if (!walk->HasKind(GROUP, SUBTYPE)) return false;
  walk->PassRecord();
  if (walk->IsBeyondEnd()) return true;
  if (!walk->Is(GROUP, SUBTYPE, CLOSE)) return false;
  walk->PassMark();
  return true;
}

}  // namespace

// Yes when the head ends before a byte contradicts the format.
std::int32_t DetectFilter0505(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  if (head.size() < 3) return 0;
  RecordWalk walk(head);
  if (walk.HasKind(GROUP, 0x00)) walk.PassRecord();
  walk.PassFillers();
  if (walk.IsAtEnd()) return 1;
  if (!PassFirstGroup(&walk)) return 0;
  walk.PassFillers();
  if (walk.IsAtEnd()) return 1;
  if (!PassSecondGroup(&walk)) return 0;
  walk.PassFillers();
  return walk.IsAtEnd() || walk.OpensThirdGroup();
}

}  // namespace typescout
