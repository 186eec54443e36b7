// A file that a library reads on behalf of a module: by blocks, and within limits.
#ifndef TYPESCOUT_MODULES_BOUNDED_FILE_H
#define TYPESCOUT_MODULES_BOUNDED_FILE_H

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>

#include "host/posix/regular_file.h"

namespace modules {

// Thrown when a limit is reached. Not derived from std::exception, so that the libraries, which
// take those for damage in the file, let it pass.
struct LimitReached {};

class BoundedFile {
 public:
  static constexpr std::chrono::milliseconds TIME_LIMIT{200};
  static constexpr std::int64_t READ_LIMIT = 64 << 20;

  // `file` is open and outlives this. The time runs from now on.
  explicit BoundedFile(const posix_host::RegularFile& file) : file_(file) {}

  std::int64_t size() const { return static_cast<std::int64_t>(file_.size()); }

  // Reads up to `count` bytes at `offset`; returns how many there are.
  std::size_t ReadAt(std::int64_t offset, char* to, std::size_t count);
  // The byte at `offset`; -1 beyond the end.
  int ByteAt(std::int64_t offset);
  // Counts `bytes` as read. Every step that costs time counts as a few, so that the clock is looked
  // at now and then.
  void Spend(std::int64_t bytes);

 private:
  // Makes the block with `offset` the current one; how many bytes it has from there on.
  std::size_t LoadBlock(std::int64_t offset);

  const posix_host::RegularFile& file_;
  const std::chrono::steady_clock::time_point deadline_ =
      std::chrono::steady_clock::now() + TIME_LIMIT;
  std::int64_t spent_ = 0;
  std::int64_t blockAt_ = 0;
  std::int64_t blockSize_ = 0;
  std::array<char, 16384> block_;
};

}  // namespace modules

#endif  // TYPESCOUT_MODULES_BOUNDED_FILE_H
