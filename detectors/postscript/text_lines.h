// The text at the start of a PostScript file as lines of bounded length, and a search for the marks
// of the document structuring conventions, so that only lines with a mark need be read.
#ifndef TYPESCOUT_DETECTORS_POSTSCRIPT_TEXT_LINES_H
#define TYPESCOUT_DETECTORS_POSTSCRIPT_TEXT_LINES_H

#include <cstddef>
#include <string_view>

namespace typescout {

// Cuts text into lines, forward only. CR and LF end a line, in any number and order; empty lines
// are passed over. A line that fills the capacity ends there: the one byte behind it is dropped, be
// it a line end or not, and the next line starts with the byte after that.
class TextLineReader {
 public:
  // `text` is kept alive by the caller. `capacity`: the most bytes that a line holds; not 0.
  TextLineReader(std::string_view text, std::size_t capacity) : text_(text), capacity_(capacity) {}

  // Sets `*line` to the next line, as far as its first zero byte: a view into the text. False at
  // the end of the text, with `*line` as it was.
  bool ReadTextLine(std::string_view* line);

  // Skips the lines that end before `position`, which is not that of a line end but may be the end
  // of the text. Does nothing when the position is passed already.
  void SkipLinesBefore(std::size_t position);

  // Where the bytes that are not read yet begin.
  std::size_t Position() const { return at_; }

 private:
  std::string_view text_;
  std::size_t capacity_;
  std::size_t at_ = 0;
};

// One mark, searched for ahead of the lines of one text. Each stretch of the text is searched once.
class MarkSearch {
 public:
  // `text` and `mark` are kept alive by the caller; `mark` holds no line end.
  MarkSearch(std::string_view text, std::string_view mark) : text_(text), mark_(mark) {
    SearchFrom(0);
  }

  // Whether the mark is nowhere in the text. To be called before any other function.
  bool IsAbsent() const { return next_ == text_.size(); }

  // The first position of the mark at or behind `position`, or the end of the text. `position` must
  // not decrease from one call to the next, of this function or of IsIn.
  std::size_t NextFrom(std::size_t position) {
    if (next_ < position) SearchFrom(position);
    return next_;
  }

  // Whether the mark lies wholly in `line`, a view into the text, whose start is the position.
  bool IsIn(std::string_view line) {
    if (line.size() < mark_.size()) return false;
    const auto begin = static_cast<std::size_t>(line.data() - text_.data());
    return NextFrom(begin) + mark_.size() <= begin + line.size();
  }

 private:
  void SearchFrom(std::size_t position);

  std::string_view text_;
  std::string_view mark_;
  std::size_t next_;
};

}  // namespace typescout

#endif  // TYPESCOUT_DETECTORS_POSTSCRIPT_TEXT_LINES_H
