#include "cli/input/path_list.h"

#include <algorithm>

#include "cli/platform/platform.h"

namespace typescout::cli {

PathList::PathList(const std::string& file, char terminator) : terminator_(terminator) {
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

bool PathList::Fill(const std::function<void()>& beforeWaiting) {
  constexpr std::size_t PIECE = 65'536;
  if (!platform::IsReadable(handle_)) beforeWaiting();
  buffer_.erase(0, at_);
  at_ = 0;
  const std::size_t before = buffer_.size();
  buffer_.resize(before + PIECE);
  const std::size_t count = platform::ReadSome(handle_, buffer_.data() + before, PIECE, &error_);
  buffer_.resize(before + count);
  atEnd_ = count == 0;
  return count != 0;
}

bool PathList::Next(const std::function<void()>& beforeWaiting, std::string* path) {
  std::size_t searchFrom = at_;
  while (error_ == 0) {
    const std::size_t end = buffer_.find(terminator_, searchFrom);
    const bool isLast = end == std::string::npos && atEnd_;
    if (end != std::string::npos || isLast) {
      *path = buffer_.substr(at_, end == std::string::npos ? end : end - at_);
      at_ = isLast ? buffer_.size() : end + 1;
      searchFrom = at_;
      if (!path->empty()) return true;
      if (isLast) return false;
      continue;
    }
    const std::size_t unfinished = buffer_.size() - at_;
    Fill(beforeWaiting);
    if (platform::IsInterrupted()) return false;
    searchFrom = unfinished;
  }
  return false;
}

}  // namespace typescout::cli
