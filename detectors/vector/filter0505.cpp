// A stream of records, recognised by its opening groups.
#include "detectors/vector/vector.h"

namespace typescout {
namespace {

// Goes through records of a type byte, the length of what follows the length byte, and that. All
// bytes beyond the head read as 0, also just behind its end.
class RecordWalk {
 public:
  explicit RecordWalk(ByteView head) : head_(head) {}

  // Of the record here: the bytes at 0, 2 and 3 from its start.
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
  // Up to the end of the head at most: zeros follow it.
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

// Passes the first group when it stands here: an opening mark, then records up to the closing one.
// False when something else is among them. The head may end anywhere.
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

// Where the head ends before anything has contradicted the format, the answer is yes.
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
