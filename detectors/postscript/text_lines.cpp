#include "detectors/postscript/text_lines.h"

#include <algorithm>

#include "core/byte_view.h"

namespace typescout {
namespace {

constexpr bool IsLineEnd(char c) { return c == '\r' || c == '\n'; }

// The first position from `at` on, and before `limit`, of a line end or a zero byte; else `limit`.
std::size_t FindEndOrZero(std::string_view text, std::size_t at, std::size_t limit) {
  for (; at < limit; ++at) {
    const char c = text[at];
    if (static_cast<unsigned char>(c) > '\r') continue;  // most bytes
    if (IsLineEnd(c) || c == '\0') break;
  }
  return at;
}

}  // namespace

bool TextLineReader::ReadTextLine(std::string_view* line) {
  std::size_t begin = at_;
  while (begin < text_.size() && IsLineEnd(text_[begin])) ++begin;
  at_ = begin;
  if (begin == text_.size()) return false;
  const std::size_t limit = begin + std::min(capacity_, text_.size() - begin);
  const std::size_t visible = FindEndOrZero(text_, begin, limit);
  std::size_t end = visible;
  while (end < limit && !IsLineEnd(text_[end])) ++end;
  *line = text_.substr(begin, visible - begin);
  at_ = std::min(end + 1, text_.size());
  return true;
}

void TextLineReader::SkipLinesBefore(std::size_t position) {
  if (position <= at_) return;
  std::size_t begin = position;
  while (begin > at_ && !IsLineEnd(text_[begin - 1])) --begin;
  // From here to the position there is no line end, only lines that fill the capacity.
  const std::size_t fullLine = capacity_ + 1;
  at_ = position - begin < fullLine ? begin : position - (position - begin) % fullLine;
}

void MarkSearch::SearchFrom(std::size_t position) {
  const ByteView::Position hit = ByteView(text_.substr(position)).Find(mark_);
  next_ = hit == ByteView::NOT_FOUND ? text_.size() : position + static_cast<std::size_t>(hit);
}

}  // namespace typescout
