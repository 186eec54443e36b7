// A regular file that is open for reading: what the file object and the compound-document reader
// are made of.
#ifndef TYPESCOUT_HOST_POSIX_REGULAR_FILE_H
#define TYPESCOUT_HOST_POSIX_REGULAR_FILE_H

#include <array>
#include <cstddef>
#include <cstdint>

namespace posix_host {

// A wide path in the system's bytes: UTF-8, whatever the locale, with U+DC80 to U+DCFF for the
// single bytes 0x80 to 0xFF of a name that is not valid UTF-8. On the stack, since every open needs
// one: it holds whatever 259 characters can become.
class PathBytes {
 public:
  explicit PathBytes(const wchar_t* path);
  // Null when the path was null, too long, or held something else than Unicode scalar values.
  const char* get() const { return valid_ ? bytes_.data() : nullptr; }

 private:
  std::array<char, 259 * 4 + 1> bytes_;
  bool valid_ = false;
};

class RegularFile {
 public:
  RegularFile() = default;
  RegularFile(const RegularFile&) = delete;
  RegularFile& operator=(const RegularFile&) = delete;
  ~RegularFile() { Close(); }

  // Opens the file for reading; false, with `errno` set and nothing open, when it cannot be or is
  // no regular file. Never blocks: a pipe, device or folder is closed again unread.
  bool Open(const wchar_t* path);
  void Close();

  // Reads up to `count` bytes at `offset`; returns how many came: fewer only at the end of the file
  // or on an error.
  std::size_t ReadAt(std::uint64_t offset, void* bytes, std::size_t count) const;
  // In bytes, as it was when the file was opened; 0 when it is not.
  std::uint64_t size() const { return size_; }

 private:
  int descriptor_ = -1;
  std::uint64_t size_ = 0;
};

}  // namespace posix_host

#endif  // TYPESCOUT_HOST_POSIX_REGULAR_FILE_H
