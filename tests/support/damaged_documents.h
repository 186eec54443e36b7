// A small compound document, and the same with one number damaged in each of many ways.
#ifndef TYPESCOUT_TESTS_SUPPORT_DAMAGED_DOCUMENTS_H
#define TYPESCOUT_TESTS_SUPPORT_DAMAGED_DOCUMENTS_H

#include <cstddef>
#include <string>
#include <vector>

namespace typescout::tests {

// Bytes that tell where they stand.
std::string DocumentContent(std::size_t size);

// A document with the streams "Long" of 5,000 bytes and "Short" of 200.
std::string WholeDocument();
// Where the contents of its streams lie.
inline constexpr std::size_t CONTENTS_AT = 512;
inline constexpr std::size_t CONTENTS_END = CONTENTS_AT + 11 * 512;

struct DamagedDocument {
  std::string what;
  std::string bytes;
  std::size_t longSize, shortSize;  // what our reader makes of the streams
  bool isSound;                     // whether a reader without checks ends
};
inline constexpr auto NO_STREAM = static_cast<std::size_t>(-1);

std::vector<DamagedDocument> DamagedDocuments();

}  // namespace typescout::tests

#endif  // TYPESCOUT_TESTS_SUPPORT_DAMAGED_DOCUMENTS_H
