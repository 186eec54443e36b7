// A regular file that is open for reading: what the file object and the compound-document reader
// are made of.
#ifndef TYPESCOUT_HOST_POSIX_REGULAR_FILE_H
#define TYPESCOUT_HOST_POSIX_REGULAR_FILE_H

#include <cstddef>
#include <cstdint>

namespace posix_host {

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
