// Writes compound documents for tests. [MS-CFB].
#ifndef TYPESCOUT_TESTS_SUPPORT_COMPOUND_WRITER_H
#define TYPESCOUT_TESTS_SUPPORT_COMPOUND_WRITER_H

#include <cstddef>
#include <map>
#include <string>

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

}  // namespace typescout::tests

#endif  // TYPESCOUT_TESTS_SUPPORT_COMPOUND_WRITER_H
