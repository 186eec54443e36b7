// Bytes in memory as the source of a compound document.
#ifndef TYPESCOUT_TESTS_SUPPORT_MEMORY_SOURCE_H
#define TYPESCOUT_TESTS_SUPPORT_MEMORY_SOURCE_H

#include <string>
#include <utility>

#include "host/compound/byte_source.h"

namespace typescout::tests {

class MemorySource final : public compound::ByteSource {
 public:
  // A read that counts `*failing` down to 0 gives nothing.
  explicit MemorySource(std::string bytes, int* failing = nullptr)
      : bytes_(std::move(bytes)), failing_(failing) {}

  std::size_t ReadAt(std::uint64_t offset, void* bytes, std::size_t count) const override {
    if ((failing_ != nullptr && --*failing_ == 0) || offset >= size()) return 0;
    return bytes_.copy(static_cast<char*>(bytes), count, static_cast<std::size_t>(offset));
  }
  std::uint64_t size() const override { return bytes_.size(); }

 private:
  std::string bytes_;
  int* failing_;
};

}  // namespace typescout::tests

#endif  // TYPESCOUT_TESTS_SUPPORT_MEMORY_SOURCE_H
