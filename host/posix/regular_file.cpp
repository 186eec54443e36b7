#include "host/posix/regular_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace posix_host {
namespace {

constexpr char32_t FIRST_RAW_BYTE = 0xDC80;
constexpr char32_t LAST_RAW_BYTE = 0xDCFF;

// The bytes of one character at `to`, which has room for four; how many, or 0 when it is none.
std::size_t Encode(char32_t c, char* to) {
  const auto put = [to](std::size_t at, char32_t value) { to[at] = static_cast<char>(value); };
  const auto tail = [c](int shift) { return 0x80 | (c >> shift & 0x3F); };
  if (c < 0x80) {
    put(0, c);
    return 1;
  }
  if (c < 0x800) {
    put(0, 0xC0 | c >> 6);
    put(1, tail(0));
    return 2;
  }
  if (c >= FIRST_RAW_BYTE && c <= LAST_RAW_BYTE) {
    put(0, c & 0xFF);
    return 1;
  }
  if (c >= 0xD800 && c <= 0xDFFF) return 0;
  if (c < 0x10000) {
    put(0, 0xE0 | c >> 12);
    put(1, tail(6));
    put(2, tail(0));
    return 3;
  }
  if (c > 0x10FFFF) return 0;
  put(0, 0xF0 | c >> 18);
  put(1, tail(12));
  put(2, tail(6));
  put(3, tail(0));
  return 4;
}

}  // namespace

PathBytes::PathBytes(const wchar_t* path) {
  if (path == nullptr) return;
  std::size_t length = 0;
  for (; *path != L'\0'; ++path) {
    if (bytes_.size() - length < 5) return;
    const std::size_t added = Encode(static_cast<char32_t>(*path), bytes_.data() + length);
    if (added == 0) return;
    length += added;
  }
  bytes_[length] = '\0';
  valid_ = true;
}

bool RegularFile::Open(const wchar_t* path) {
  Close();
  const PathBytes bytes(path);
  if (bytes.get() == nullptr) {
    errno = EINVAL;
    return false;
  }
  // O_NONBLOCK: a pipe without a writer, a device without a medium must not keep anybody waiting.
  // It means nothing to a regular file.
  do {
    descriptor_ = open(bytes.get(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  } while (descriptor_ < 0 && errno == EINTR);
  if (descriptor_ < 0) return false;
  struct stat status;
  if (fstat(descriptor_, &status) != 0) {
    Close();
    return false;
  }
  if (!S_ISREG(status.st_mode)) {
    Close();
    errno = EINVAL;
    return false;
  }
  size_ = static_cast<std::uint64_t>(status.st_size);
  return true;
}

void RegularFile::Close() {
  if (descriptor_ >= 0) {
    const int error = errno;
    close(descriptor_);  // gone even when interrupted
    errno = error;
  }
  descriptor_ = -1;
  size_ = 0;
}

std::size_t RegularFile::ReadAt(std::uint64_t offset, void* bytes, std::size_t count) const {
  constexpr std::uint64_t LAST_OFFSET = 0x7FFF'FFFF'FFFF'FFFF;
  if (descriptor_ < 0 || offset > LAST_OFFSET) return 0;
  std::size_t done = 0;
  while (done < count) {
    const ssize_t got = pread(descriptor_, static_cast<char*>(bytes) + done, count - done,
                              static_cast<off_t>(offset + done));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    done += static_cast<std::size_t>(got);
    if (offset + done == size_) break;  // nothing more to come: no need to ask
  }
  return done;
}

}  // namespace posix_host
