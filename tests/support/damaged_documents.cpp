#include "tests/support/damaged_documents.h"

#include <cstdint>

#include "tests/support/compound_writer.h"

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

constexpr struct {
  const char* what;
  std::size_t at;
  std::uint32_t value;
  std::size_t longSize;
  std::size_t shortSize;
} CASES[] = {
    {"nothing", 0, 0xE011CFD0, WHOLE, ALL},
    {"the count of table sectors", 44, 0xFFFFFFFF, WHOLE, ALL},
    {"the count of mini table sectors", 64, 0xFFFFFFFF, WHOLE, ALL},
    {"the count of DIFAT sectors", 72, 0xFFFFFFFF, WHOLE, ALL},
    {"the first DIFAT sector", 68, 3, WHOLE, ALL},
    {"the first sector of the directory, outside", 48, 1'000, NO_STREAM, NO_STREAM},
    {"the first sector of the directory, elsewhere", 48, 0, NO_STREAM, NO_STREAM},
    {"the first sector of the mini table, outside", 60, 0xFFFFFFFE, WHOLE, 64},
    {"the first sector of the table, outside", 76, 0x7FFFFFFF, 512, ALL},
    {"a chain that points to itself", FAT_AT + 4 * 3, 3, 4 * 512, ALL},
    {"a chain that goes back", FAT_AT + 4 * 3, 1, 4 * 512, ALL},
    {"a chain that leaves the file", FAT_AT + 4 * 3, 14, 4 * 512, ALL},
    {"a chain that enters a free sector", FAT_AT + 4 * 3, 0xFFFFFFFF, 4 * 512, ALL},
    {"a chain that is too short", FAT_AT + 4 * 8, 0xFFFFFFFE, 9 * 512, ALL},
    {"a mini chain that points to itself", MINI_FAT_AT + 4, 1, WHOLE, 128},
    {"a mini chain that leaves the mini stream", MINI_FAT_AT + 4, 8, WHOLE, 128},
    {"a mini stream that lies outside", DIRECTORY_AT + 116, 99, WHOLE, 0},
    {"the size of the mini stream", DIRECTORY_AT + 120, 0, WHOLE, ALL},
    {"a stream that begins outside", LONG_ENTRY + 116, 14, 0, ALL},
    {"a stream that begins at its second sector", LONG_ENTRY + 116, 1, WHOLE - 392, ALL},
    {"the high half of a size", LONG_ENTRY + 124, 0xFFFFFFFF, WHOLE, ALL},
    {"a size of all ones", LONG_ENTRY + 120, 0xFFFFFFFF, 10 * 512, ALL},
    {"a short stream's size of all ones", SHORT_ENTRY + 120, 0xFFFFFFFF, WHOLE, 10 * 512},
    {"a sibling of itself", LONG_ENTRY + 72, 1, WHOLE, ALL},
    {"siblings in a circle", LONG_ENTRY + 68, 2, WHOLE, ALL},
    {"a sibling outside", SHORT_ENTRY + 68, 77, NO_STREAM, ALL},
    {"no child of the root", DIRECTORY_AT + 76, 0xFFFFFFFF, NO_STREAM, NO_STREAM},
    {"a child that is the root", DIRECTORY_AT + 76, 0, NO_STREAM, NO_STREAM},
    {"a name that is too long", LONG_ENTRY + 64, 0x0102'FFFF, NO_STREAM, ALL},
    {"a stream that is a storage", LONG_ENTRY + 64, 0x0101'000A, NO_STREAM, ALL},
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
  for (const auto& c : CASES) {
    documents.push_back({c.what, WholeDocument(), c.longSize, c.shortSize});
    Put32(documents.back().bytes, c.at, c.value);
  }
  return documents;
}

}  // namespace typescout::tests
