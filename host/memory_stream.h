// The host suite's stream over bytes in memory.
#ifndef TYPESCOUT_HOST_MEMORY_STREAM_H
#define TYPESCOUT_HOST_MEMORY_STREAM_H

#include <cstdint>

namespace TvnUtils {

// A read position in bytes that the caller owns and keeps alive. Copies move independently.
class Stream {
 public:
  // Reads up to `count` bytes into `bytes`; returns how many came.
  std::uint64_t Read(void* bytes, std::uint64_t count);
  std::uint64_t GetLength() const { return length_; }

 private:
  friend class MemStream;
  Stream(const unsigned char* bytes, std::uint64_t length) : bytes_(bytes), length_(length) {}

  const unsigned char* bytes_;
  std::uint64_t length_;
  std::uint64_t position_ = 0;
};

class MemStream {
 public:
  // A stream that reads the `length` bytes at `bytes` in place; a negative length is none.
  static Stream OpenOnRef(const unsigned char* bytes, std::int64_t length);
};

}  // namespace TvnUtils

#endif  // TYPESCOUT_HOST_MEMORY_STREAM_H
