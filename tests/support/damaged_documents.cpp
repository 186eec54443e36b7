#include "tests/support/documents.h"

#include <cstdint>

namespace typescout::tests {
namespace {

// Behind the header come, in sectors of 512 bytes: the long stream, the mini stream, its table, the
// directory, the table.
constexpr std::size_t MINI_FAT_AT = CONTENTS_END;
constexpr std::size_t DIRECTORY_AT = MINI_FAT_AT + 512;
constexpr std::size_t FAT_AT = DIRECTORY_AT + 512;
constexpr std::size_t LONG_ENTRY = DIRECTORY_AT + 128;
constexpr std::size_t SHORT_ENTRY = DIRECTORY_AT + 256;

constexpr std::size_t WHOLE = 5'000;
constexpr std::size_t ALL = 200;
constexpr std::size_t NONE = NO_STREAM;
enum : bool { UNSOUND, SOUND };

// In the table, sectors 0 to 9 are the long stream, 10 is the mini stream, 11 its table, 12 the
// directory and 13 the table itself.
constexpr struct {
  const char* what;
  std::size_t at;
  std::uint32_t value;
  std::size_t longSize;
  std::size_t shortSize;
  bool isSound;
} CASES[] = {
    {"nothing", 0, 0xE011CFD0, WHOLE, ALL, SOUND},
    {"the version: 4, with sectors of 512 bytes", 24, 0x0004003E, NONE, NONE, UNSOUND},
    {"the version: 5", 24, 0x0005003E, NONE, NONE, UNSOUND},
    {"the byte-order mark", 28, 0x0009FEFF, NONE, NONE, UNSOUND},
    {"the size of sectors: 4,096 in version 3", 28, 0x000CFFFE, NONE, NONE, UNSOUND},
    {"the size of mini sectors", 32, 7, NONE, NONE, UNSOUND},
    {"the longest short stream", 56, 8'192, NONE, NONE, UNSOUND},
    {"the count of table sectors: 0", 44, 0, WHOLE, ALL, SOUND},
    {"the count of table sectors: all ones", 44, 0xFFFFFFFF, WHOLE, ALL, SOUND},
    {"the count of mini table sectors", 64, 0xFFFFFFFF, WHOLE, ALL, SOUND},
    {"the count of DIFAT sectors", 72, 0xFFFFFFFF, WHOLE, ALL, UNSOUND},
    {"the first DIFAT sector", 68, 3, WHOLE, ALL, SOUND},
    {"the first sector of the directory, outside", 48, 1'000, NONE, NONE, UNSOUND},
    {"the first sector of the directory, elsewhere", 48, 0, NONE, NONE, UNSOUND},
    {"the first sector of the mini table, outside", 60, 1'000, WHOLE, 64, UNSOUND},
    {"the first sector of the mini table, none", 60, 0xFFFFFFFE, WHOLE, 64, SOUND},
    {"the first sector of the table, outside", 76, 0x7FFFFFFF, 512, ALL, SOUND},
    {"a directory that is a circle", FAT_AT + 4 * 12, 12, WHOLE, ALL, UNSOUND},
    {"a directory that leaves the file", FAT_AT + 4 * 12, 14, WHOLE, ALL, UNSOUND},
    {"a mini table that is a circle", FAT_AT + 4 * 11, 11, WHOLE, ALL, UNSOUND},
    {"a mini table that leaves the file", FAT_AT + 4 * 11, 14, WHOLE, ALL, UNSOUND},
    {"a mini stream that is a circle", FAT_AT + 4 * 10, 10, WHOLE, ALL, UNSOUND},
    {"a mini stream that leaves the file", FAT_AT + 4 * 10, 14, WHOLE, ALL, UNSOUND},
    {"a chain that points to itself", FAT_AT + 4 * 3, 3, 4 * 512, ALL, UNSOUND},
    {"a chain that goes back", FAT_AT + 4 * 3, 1, 4 * 512, ALL, UNSOUND},
    {"a chain that leaves the file", FAT_AT + 4 * 3, 14, 4 * 512, ALL, SOUND},
    {"a chain that enters a free sector", FAT_AT + 4 * 3, 0xFFFFFFFF, 4 * 512, ALL, SOUND},
    {"a chain that is too short", FAT_AT + 4 * 8, 0xFFFFFFFE, 9 * 512, ALL, SOUND},
    {"a mini chain that points to itself", MINI_FAT_AT + 4, 1, WHOLE, 128, SOUND},
    {"a mini chain that leaves the mini stream", MINI_FAT_AT + 4, 8, WHOLE, 128, SOUND},
    {"a root that is no entry", DIRECTORY_AT + 64, 0x0100'0016, NONE, NONE, UNSOUND},
    {"a root that is a stream", DIRECTORY_AT + 64, 0x0102'0016, NONE, NONE, UNSOUND},
    {"a mini stream that lies outside", DIRECTORY_AT + 116, 99, WHOLE, 0, UNSOUND},
    {"the size of the mini stream: 0", DIRECTORY_AT + 120, 0, WHOLE, ALL, SOUND},
    {"a stream that begins outside", LONG_ENTRY + 116, 14, 0, ALL, SOUND},
    {"a stream that begins at its second sector", LONG_ENTRY + 116, 1, WHOLE - 392, ALL, SOUND},
    {"the high half of a size", LONG_ENTRY + 124, 0xFFFFFFFF, WHOLE, ALL, SOUND},
    {"a size of all ones", LONG_ENTRY + 120, 0xFFFFFFFF, 10 * 512, ALL, SOUND},
    {"a short stream's size of all ones", SHORT_ENTRY + 120, 0xFFFFFFFF, WHOLE, 10 * 512, SOUND},
    {"a sibling of itself", LONG_ENTRY + 72, 1, WHOLE, ALL, UNSOUND},
    {"siblings in a circle", LONG_ENTRY + 68, 2, WHOLE, ALL, UNSOUND},
    {"a sibling outside", SHORT_ENTRY + 68, 77, NONE, ALL, UNSOUND},
    {"no child of the root", DIRECTORY_AT + 76, 0xFFFFFFFF, NONE, NONE, SOUND},
    {"a child that is the root", DIRECTORY_AT + 76, 0, NONE, NONE, SOUND},
    {"a name that is too long", LONG_ENTRY + 64, 0x0102'FFFF, NONE, ALL, SOUND},
    {"a name that is too short", LONG_ENTRY + 64, 0x0102'0008, NONE, ALL, SOUND},
    {"a stream that is a storage", LONG_ENTRY + 64, 0x0101'000A, NONE, ALL, SOUND},
};

void Put32(std::string& bytes, std::size_t at, std::uint32_t value) {
  for (std::size_t i = 0; i < 4; ++i) bytes[at + i] = static_cast<char>(value >> 8 * i);
}

}  // namespace

std::string DocumentContent(std::size_t size) {
  std::string bytes(size, '\0');
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 7 + i / 251);
  return bytes;
}

std::string WholeDocument() {
  return WriteCompound({{L"Long", DocumentContent(WHOLE)}, {L"Short", DocumentContent(ALL)}});
}

std::vector<DamagedDocument> DamagedDocuments() {
  std::vector<DamagedDocument> documents;
  const std::string whole = WholeDocument();
  for (const auto& c : CASES) {
    documents.push_back({c.what, whole, c.longSize, c.shortSize, c.isSound});
    Put32(documents.back().bytes, c.at, c.value);
  }
  const auto cut = [&](const char* what, std::size_t size, std::size_t longSize,
                       std::size_t shortSize, bool isSound) {
    documents.push_back({what, whole.substr(0, size), longSize, shortSize, isSound});
  };
  cut("the end: the header alone is there", CONTENTS_AT, NONE, NONE, UNSOUND);
  cut("the end: no table", FAT_AT, 512, ALL, SOUND);
  cut("the end: half of the table", FAT_AT + 256, WHOLE, ALL, SOUND);
  return documents;
}

}  // namespace typescout::tests
