#include "detectors/postscript/text_lines.h"

#include <algorithm>

#include "core/byte_view.h"

namespace typescout {
namespace {

constexpr bool IsLineEnd(char c) { return c == '\r' || c == '\n'; }
constexpr bool IsLineEndOrZero(char c) { return IsLineEnd(c) || c == '\0'; }

// Whether one of the PIECE bytes at `at` is what is looked for. Without a branch on a byte's value,
// so that the compiler can compare all at once.
constexpr std::size_t PIECE = 16;
template <bool IS_SOUGHT(char)>
bool HasAny(std::string_view text, std::size_t at) {
  unsigned char any = 0;
  for (const char c : text.substr(at, PIECE)) any |= static_cast<unsigned char>(IS_SOUGHT(c));
  return any != 0;
}

// The first such byte from `at` on and before `limit`, or `limit`.
template <bool IS_SOUGHT(char)>
std::size_t FindFirst(std::string_view text, std::size_t at, std::size_t limit) {
  for (const std::size_t near = std::min(at + PIECE, limit); at < near; ++at) {
    if (IS_SOUGHT(text[at])) return at;
  }
  while (at + PIECE <= limit && !HasAny<IS_SOUGHT>(text, at)) at += PIECE;
  while (at < limit && !IS_SOUGHT(text[at])) ++at;
  return at;
}

}  // namespace

bool TextLineReader::ReadTextLine(std::string_view* line) {
  std::size_t begin = at_;
  while (begin < text_.size() && IsLineEnd(text_[begin])) ++begin;
  at_ = begin;
  if (begin == text_.size()) return false;
  const std::size_t limit = begin + std::min(capacity_, text_.size() - begin);
  const std::size_t visible = FindFirst<IsLineEndOrZero>(text_, begin, limit);
  const std::size_t end = FindFirst<IsLineEnd>(text_, visible, limit);
  *line = text_.substr(begin, visible - begin);
  at_ = std::min(end + 1, text_.size());
  return true;
}

void TextLineReader::SkipLinesBefore(std::size_t position) {
  if (position <= at_) return;
  std::size_t begin = position;
  while (begin >= at_ + PIECE && !HasAny<IsLineEnd>(text_, begin - PIECE)) begin -= PIECE;
  while (begin > at_ && !IsLineEnd(text_[begin - 1])) --begin;
  // From here to the position there is no line end, only lines that fill the capacity.
  const std::size_t length = position - begin;
  at_ = length <= capacity_ ? begin : position - length % (capacity_ + 1);
}

void MarkSearch::SearchFrom(std::size_t position) {
  const ByteView::Position hit = ByteView(text_.substr(position)).Find(mark_);
  next_ = hit == ByteView::NOT_FOUND ? text_.size() : position + static_cast<std::size_t>(hit);
}

}  // namespace typescout
