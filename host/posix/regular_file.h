// A regular file that is open for reading. The file object and the compound-document reader read
// through it.
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

  // Opens the file for reading. False, with `errno` set and nothing open, when that fails or the
  // path is null or leads to something other than a regular file: a pipe, socket, device or folder
  // is not opened. Waits for nothing but another process's lease on the file (fcntl, F_SETLEASE).
  bool Open(const wchar_t* path);
  void Close();

  // Reads up to `count` bytes at `offset` and returns how many came: fewer only at the end of the
  // file or on an error.
  std::size_t ReadAt(std::uint64_t offset, void* bytes, std::size_t count) const;
  // In bytes, as it was when the file was opened; 0 when it is not.
  std::uint64_t size() const { return size_; }

 private:
  int descriptor_ = -1;
  std::uint64_t size_ = 0;
};

}  // namespace posix_host

#endif  // TYPESCOUT_HOST_POSIX_REGULAR_FILE_H
