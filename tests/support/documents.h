// Compound documents for tests: written, damaged, read from memory. [MS-CFB].
#ifndef TYPESCOUT_TESTS_SUPPORT_DOCUMENTS_H
#define TYPESCOUT_TESTS_SUPPORT_DOCUMENTS_H

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "host/compound/byte_source.h"
#include "host/structured_storage.h"
#include "tests/samples/sample.h"

namespace typescout::tests {

struct CompoundOptions {
  int version = 3;  // 3: sectors of 512 bytes; 4: of 4,096
  CLSID classId = {};
  // Free sectors before those that are used. 14,000 and more make a document of version 3 need
  // sectors of the DIFAT.
  std::size_t freeSectors = 0;
};

// A document with these streams directly below its root; those shorter than 4,096 bytes lie in the
// mini stream. In the file come, in this order: the header, free sectors, long streams, the mini
// stream, its allocation table, the directory (root first, then the streams in the map's order),
// the allocation table, the DIFAT.
std::string WriteCompound(const std::map<std::wstring, std::string>& streams,
                          const CompoundOptions& options = {});

// What a real file holds that stands for the sample: its bytes, or a document with its streams.
inline std::string FileBytes(const File& sample) {
  return sample.streams.empty() ? sample.bytes : WriteCompound(sample.streams);
}

// Bytes that tell where they stand.
std::string DocumentContent(std::size_t size);

// A document with the streams "Long" of 5,000 bytes and "Short" of 200.
std::string WholeDocument();
// Where the contents of its streams lie.
inline constexpr std::size_t CONTENTS_AT = 512;
inline constexpr std::size_t CONTENTS_END = CONTENTS_AT + 11 * 512;

// The same with one number damaged in each of many ways.
struct DamagedDocument {
  std::string what;
  std::string bytes;
  std::size_t longSize, shortSize;  // what our reader makes of the streams
  bool isSound;                     // whether a reader without checks ends
};
inline constexpr auto NO_STREAM = static_cast<std::size_t>(-1);

std::vector<DamagedDocument> DamagedDocuments();

// Bytes in memory as the source of a document.
class MemorySource final : public compound::ByteSource {
 public:
  // The read that counts `*failing` down to 0 gives nothing.
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

#endif  // TYPESCOUT_TESTS_SUPPORT_DOCUMENTS_H
