// Word binary document: a compound document with the stream "WordDocument". [MS-DOC] 2.1.
#include <iterator>

#include "detectors/documents/documents.h"
#include "detectors/stream_read.h"

namespace typescout {
namespace {

constexpr int UNKNOWN = -1;

// A value of the first word of the file information block ([MS-DOC] 2.5.2), the lowest value of the
// second word, the format version, for which it is valid, and the Word version that it stands for.
struct Identifier {
  std::uint16_t word;
  std::uint16_t leastVersion;
  int wordVersion;
};

constexpr Identifier IDENTIFIERS[] = {
    {0xA5DC, 101, 6}, {0xA5EC, 191, 8}, {0xA697, 101, 6},
    {0x8098, 101, 6}, {0xA699, 101, 6}, {0x8099, 101, 6},
};

// 8, 6 (for the versions 6 and 7) or UNKNOWN.
int WordVersion(std::uint16_t word, std::uint16_t version) {
  for (const Identifier& identifier : IDENTIFIERS) {
    if (word == identifier.word && version >= identifier.leastVersion) {
      return identifier.wordVersion;
    }
  }
  return UNKNOWN;
}

// The same for the open document. Both words may be byte-swapped.
int ReadWordVersion(const ProbeContext* probe) {
  unsigned char buffer[1'536];
  const ByteView block = ReadStream(probe->storage, L"WordDocument", buffer);
  if (block.size() < std::ssize(buffer)) return UNKNOWN;
  const int version = WordVersion(block.U16Le(0), block.U16Le(2));
  return version != UNKNOWN ? version : WordVersion(block.U16Be(0), block.U16Be(2));
}

}  // namespace

std::int32_t DetectWordDocument8(const ProbeContext* probe) { return ReadWordVersion(probe) == 8; }

std::int32_t DetectWordDocument6(const ProbeContext* probe) { return ReadWordVersion(probe) == 6; }

}  // namespace typescout
