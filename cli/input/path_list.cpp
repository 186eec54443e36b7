#include "cli/input/path_list.h"

#include <algorithm>
#include <utility>

#include "cli/platform/streams.h"
#include "cli/platform/system.h"
#include "cli/utf8.h"

namespace typescout::cli {

PathList::PathList(const std::string& file, bool endsInNul) : endsInNul_(endsInNul) {
  if (endsInNul) encoding_ = Encoding::BYTES;
  if (file == "-") {
    handle_ = platform::StandardInput();
  } else {
    handle_ = platform::OpenForReading(file, &error_);
    isOwned_ = error_ == 0;
  }
}

PathList::~PathList() {
  if (isOwned_) platform::CloseHandle(handle_);
}

bool PathList::Fill() {
  constexpr std::size_t PIECE = 65'536;
  buffer_.erase(0, std::exchange(at_, 0));
  std::string piece = std::exchange(undecoded_, {});
  const std::size_t before = piece.size();
  piece.resize(before + PIECE);
  const std::size_t count = platform::ReadSome(handle_, piece.data() + before, PIECE, &error_);
  piece.resize(before + count);
  atEnd_ = count == 0;
  Decode(&piece);
  buffer_ += piece;
  return !atEnd_;
}

// Turns what was read into UTF-8. An incomplete character is kept in `undecoded_`.
void PathList::Decode(std::string* piece) {
  if (encoding_ == Encoding::UNKNOWN) {
    constexpr std::string_view UTF8_MARK = "\xEF\xBB\xBF";
    if (!atEnd_ && piece->size() < UTF8_MARK.size()) return undecoded_.swap(*piece);
    encoding_ = piece->starts_with("\xFF\xFE")   ? Encoding::UTF16_LITTLE
                : piece->starts_with("\xFE\xFF") ? Encoding::UTF16_BIG
                                                 : Encoding::BYTES;
    if (encoding_ != Encoding::BYTES) piece->erase(0, 2);
    if (piece->starts_with(UTF8_MARK)) piece->erase(0, UTF8_MARK.size());
  }
  if (encoding_ == Encoding::BYTES) return;
  std::string text;
  const auto at = [piece](std::size_t i) { return static_cast<unsigned char>((*piece)[i]); };
  const std::size_t low = encoding_ == Encoding::UTF16_LITTLE ? 0 : 1;
  std::size_t i = 0;
  for (; i + 1 < piece->size(); i += 2) {
    const auto unit = static_cast<char16_t>(at(i + low) | at(i + 1 - low) << 8);
    const char16_t high = std::exchange(highHalf_, u'\0');
    if (high != 0 && unit >= 0xDC00 && unit < 0xE000) {
      AppendUtf8(0x10000u + ((high - 0xD800u) << 10) + (unit - 0xDC00u), &text);
      continue;
    }
    if (high != 0) AppendUtf8(high, &text);
    if (unit >= 0xD800 && unit < 0xDC00) {
      highHalf_ = unit;
    } else {
      AppendUtf8(unit, &text);
    }
  }
  undecoded_ = piece->substr(i);
  *piece = std::move(text);
}

bool PathList::NextEntry(std::string* entry, bool* isCut) {
  const char terminator = endsInNul_ ? '\0' : '\n';
  *isCut = false;
  std::size_t searched = 0;
  while (error_ == 0) {
    const std::size_t end = buffer_.find(terminator, at_ + searched);
    const std::size_t length = std::min(end, buffer_.size()) - at_;
    if (length > LONGEST_ENTRY) {
      if (!*isCut) *entry = buffer_.substr(at_, LONGEST_ENTRY);
      *isCut = true;
      // A list of the wrong kind may have no line ends at all.
      if (!endsInNul_ && entry->find('\0') != std::string::npos) return true;
      if (end == std::string::npos) at_ = buffer_.size();
    }
    if (end != std::string::npos || (atEnd_ && (length != 0 || *isCut))) {
      if (!*isCut) *entry = buffer_.substr(at_, length);
      at_ = std::min(end, buffer_.size() - 1) + 1;
      return true;
    }
    if (atEnd_) return false;
    searched = buffer_.size() - at_;
    if (*isCut) searched = 0;
    Fill();
  }
  return false;
}

PathList::Result PathList::Next(std::string* path) {
  bool isCut = false;
  std::size_t empty = 0;
  while (NextEntry(path, &isCut)) {
    if (!endsInNul_) {
      if (path->find('\0') != std::string::npos) return Result::HAS_NUL;
      if (path->ends_with('\r')) path->pop_back();
    }
    *path = platform::ListedPath(std::move(*path));
    if (!path->empty()) return isCut ? Result::TOO_LONG : Result::PATH;
    if (++empty > MOST_EMPTY_ENTRIES) return Result::ALL_EMPTY;
  }
  return Result::END;
}

}  // namespace typescout::cli
