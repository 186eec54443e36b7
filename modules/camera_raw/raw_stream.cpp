#include "modules/camera_raw/raw_stream.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

namespace camera_raw {

int RawStream::read(void* to, std::size_t size, std::size_t count) {
  if (size == 0) return 0;
  // LibRaw multiplies what it found in the file: no more than the file holds, in any case.
  const auto most = static_cast<std::size_t>(file_.size()) / size + 1;
  const std::size_t done =
      file_.ReadAt(position_, static_cast<char*>(to), size * std::min(count, most));
  position_ += static_cast<std::int64_t>(done);
  return static_cast<int>(done / size);
}

int RawStream::seek(INT64 offset, int origin) {
  file_.Spend(1);
  const std::int64_t from = origin == SEEK_SET ? 0 : origin == SEEK_CUR ? position_ : size_;
  position_ = offset < -from ? 0 : offset > size_ - from ? size_ : from + offset;
  return 0;
}

int RawStream::get_char() {
  const int c = file_.ByteAt(position_);
  if (c >= 0) ++position_;
  return c;
}

char* RawStream::gets(char* line, int capacity) {
  int length = 0;
  int c = 0;
  while (length + 1 < capacity && (c = get_char()) >= 0 && c != '\n') {
    line[length++] = static_cast<char>(c);
  }
  if (capacity < 1 || (c < 0 && length == 0)) return nullptr;
  line[length] = '\0';
  return line;
}

int RawStream::scanf_one(const char* format, void* value) {
  constexpr std::size_t LONGEST = 24;  // as LibRaw's own streams
  std::array<char, LONGEST + 1> text = {};
  for (std::size_t i = 0; i < LONGEST; ++i) {
    const int c = get_char();
    if (c <= 0 || (i > 0 && std::strchr(" \t\n", c) != nullptr)) break;
    text[i] = static_cast<char>(c);
  }
  return std::sscanf(text.data(), format, value);
}

}  // namespace camera_raw
