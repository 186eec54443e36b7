// Where the bytes of a compound document come from.
#ifndef TYPESCOUT_HOST_COMPOUND_BYTE_SOURCE_H
#define TYPESCOUT_HOST_COMPOUND_BYTE_SOURCE_H

#include <cstddef>
#include <cstdint>

namespace compound {

class ByteSource {
 public:
  ByteSource() = default;
  ByteSource(const ByteSource&) = delete;
  ByteSource& operator=(const ByteSource&) = delete;
  virtual ~ByteSource() = default;

  // Reads up to `count` bytes at `offset`; returns how many came, fewer at the end or on an error.
  virtual std::size_t ReadAt(std::uint64_t offset, void* bytes, std::size_t count) const = 0;
  virtual std::uint64_t size() const = 0;
};

}  // namespace compound

#endif  // TYPESCOUT_HOST_COMPOUND_BYTE_SOURCE_H
