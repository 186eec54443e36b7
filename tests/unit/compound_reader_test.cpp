// The reader of compound documents: what a writer put in comes out, and damage ends in less.
#include "host/compound/reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "host/owners.h"
#include "tests/samples/sample.h"
#include "tests/support/compound_writer.h"

namespace typescout::tests {
namespace {

constexpr CLSID CLASS = {0x01020304, 0x0506, 0x0708, {9, 10, 11, 12, 13, 14, 15, 16}};

class MemorySource final : public compound::ByteSource {
 public:
  explicit MemorySource(std::string bytes) : bytes_(std::move(bytes)) {}
  std::size_t ReadAt(std::uint64_t offset, void* bytes, std::size_t count) const override {
    if (offset >= bytes_.size()) return 0;
    const auto at = static_cast<std::size_t>(offset);
    const std::size_t taken = std::min(count, bytes_.size() - at);
    std::memcpy(bytes, bytes_.data() + at, taken);
    return taken;
  }
  std::uint64_t size() const override { return bytes_.size(); }

 private:
  std::string bytes_;
};

InterfaceOwner<IStorage> OpenDocument(const std::string& bytes) {
  InterfaceOwner<IStorage> storage;
  const HRESULT result = compound::Open(std::make_unique<MemorySource>(bytes), storage.Receive());
  EXPECT_EQ(result == S_OK, static_cast<bool>(storage));
  return storage;
}

const std::string NOT_THERE = "(not there)";

std::string ReadStream(IStorage* storage, const wchar_t* name, std::size_t piece = 60'000) {
  InterfaceOwner<IStream> stream;
  if (storage == nullptr || storage->OpenStream(name, nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0,
                                                stream.Receive()) != S_OK) {
    EXPECT_EQ(stream.get(), nullptr);
    return NOT_THERE;
  }
  std::string content;
  std::string bytes(piece, '\0');
  std::uint32_t read = 0;
  do {
    const HRESULT result = stream->Read(bytes.data(), static_cast<std::uint32_t>(piece), &read);
    EXPECT_EQ(result, S_OK);
    content.append(bytes, 0, read);
  } while (read > 0 && content.size() < 200'000);
  return content;
}

// Bytes that tell where they stand.
std::string Content(std::size_t size) {
  std::string bytes(size, '\0');
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 7 + i / 251);
  return bytes;
}

void Put32(std::string& bytes, std::size_t at, std::uint32_t value) {
  for (int i = 0; i < 4; ++i)
    bytes[at + static_cast<std::size_t>(i)] = static_cast<char>(value >> 8 * i);
}

TEST(CompoundReader, GivesBackWhatWasWritten) {
  for (const int version : {3, 4}) {
    std::map<std::wstring, std::string> streams;
    for (const std::size_t size : {0, 1, 63, 64, 65, 512, 4'095, 4'096, 4'097, 20'000}) {
      streams[L"Stream " + std::to_wstring(size)] = Content(size);
    }
    streams[std::wstring(31, L'n')] = "the longest name";
    const auto storage =
        OpenDocument(WriteCompound(streams, {.version = version, .classId = CLASS}));
    for (const auto& [name, content] : streams) {
      EXPECT_EQ(ReadStream(storage.get(), name.c_str()), content);
      EXPECT_EQ(ReadStream(storage.get(), name.c_str(), 7), content);
    }
    EXPECT_EQ(ReadStream(storage.get(), L"sTREAM 65"), Content(65)) << "case does not matter";
    for (const wchar_t* name : {L"Stream 6", L"Stream 655", L"", L"Root Entry",
                                L"Stream\x40"
                                L"65"}) {
      EXPECT_EQ(ReadStream(storage.get(), name), NOT_THERE);
    }
    EXPECT_EQ(ReadStream(storage.get(), std::wstring(32, L'n').c_str()), NOT_THERE);
    CLSID classId = {};
    EXPECT_EQ(compound::ReadClass(storage.get(), &classId), S_OK);
    EXPECT_EQ(std::memcmp(&classId, &CLASS, sizeof classId), 0);
  }
}

TEST(CompoundReader, FollowsTheDifat) {
  const std::map<std::wstring, std::string> streams = {{L"Long", Content(9'000)}, {L"Short", "x"}};
  // Just within what the header names, just beyond, and with a second sector of the DIFAT.
  for (const std::size_t freeSectors : {13'700, 13'900, 31'000}) {
    const auto storage = OpenDocument(WriteCompound(streams, {.freeSectors = freeSectors}));
    EXPECT_EQ(ReadStream(storage.get(), L"Long"), Content(9'000)) << freeSectors;
    EXPECT_EQ(ReadStream(storage.get(), L"Short"), "x") << freeSectors;
  }
}

TEST(CompoundReader, KeepsAStreamAliveWithoutItsRoot) {
  InterfaceOwner<IStream> stream;
  {
    const auto storage = OpenDocument(WriteCompound({{L"Long", Content(5'000)}}));
    ASSERT_EQ(storage->OpenStream(L"Long", nullptr, 0x10, 0, stream.Receive()), S_OK);
  }
  std::string bytes(5'000, '\0');
  EXPECT_EQ(stream->AddRef(), 2u);
  EXPECT_EQ(stream->Release(), 1u);
  EXPECT_EQ(stream->Read(bytes.data(), 5'000, nullptr), S_OK);
  EXPECT_EQ(bytes, Content(5'000));
}

// Where things are in the document below, in sectors behind the header.
constexpr std::size_t LONG_AT = 512;  // sectors 0 to 9
constexpr std::size_t MINI_FAT_AT = LONG_AT + 11 * 512;
constexpr std::size_t DIRECTORY_AT = LONG_AT + 12 * 512;
constexpr std::size_t FAT_AT = LONG_AT + 13 * 512;

std::string SmallDocument() {
  const std::string bytes = WriteCompound({{L"Long", Content(5'000)}, {L"Short", Content(200)}});
  EXPECT_EQ(bytes.substr(LONG_AT, 5'000), Content(5'000));
  EXPECT_EQ(bytes.substr(LONG_AT + 10 * 512, 200), Content(200));
  EXPECT_EQ(bytes.substr(DIRECTORY_AT, 3), Bytes("R\0o"));
  EXPECT_EQ(bytes.size(), FAT_AT + 512);
  return bytes;
}

TEST(CompoundReader, GivesLessOfADamagedDocument) {
  const std::size_t WHOLE = 5'000;
  const std::size_t ALL = 200;
  const auto NONE = std::string::npos;  // no such stream
  const std::size_t LONG_ENTRY = DIRECTORY_AT + 128;
  const std::size_t SHORT_ENTRY = DIRECTORY_AT + 256;
  const struct {
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
      {"the first sector of the directory, outside", 48, 1'000, NONE, NONE},
      {"the first sector of the directory, elsewhere", 48, 0, NONE, NONE},
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
      {"a sibling outside", SHORT_ENTRY + 68, 77, NONE, ALL},
      {"no child of the root", DIRECTORY_AT + 76, 0xFFFFFFFF, NONE, NONE},
      {"a child that is the root", DIRECTORY_AT + 76, 0, NONE, NONE},
      {"a name that is too long", LONG_ENTRY + 64, 0x0102'FFFF, NONE, ALL},
      {"a stream that is a storage", LONG_ENTRY + 64, 0x0101'000A, NONE, ALL},
  };
  for (const auto& c : CASES) {
    std::string bytes = SmallDocument();
    Put32(bytes, c.at, c.value);
    const auto storage = OpenDocument(bytes);
    const auto expect = [&](const wchar_t* name, std::size_t size) {
      const std::string content = ReadStream(storage.get(), name);
      if (size == NONE) {
        EXPECT_EQ(content, NOT_THERE) << c.what;
      } else {
        EXPECT_EQ(content.size(), size) << c.what;
      }
    };
    expect(L"Long", c.longSize);
    expect(L"Short", c.shortSize);
  }
}

TEST(CompoundReader, OpensOnlyWhatItUnderstands) {
  const struct {
    std::size_t at;
    std::string bytes;
    bool opens;
  } CASES[] = {{0, "\xD0", true},
               {7, "\xE2", false},          // the signature
               {26, Bytes("\2\0"), false},  // the version
               {26, Bytes("\4\0"), true},
               {26, Bytes("\5\0"), false},
               {28, "\xFF\xFE", false},       // big-endian
               {32, Bytes("\7\0"), false},    // the size of mini sectors
               {56, Bytes("\0\x20"), false},  // the longest short stream
               {8, Fill(16, '\xFF'), true},   // reserved
               {24, "\xFF\xFF", true}};
  for (const auto& c : CASES) {
    const auto storage = OpenDocument(Patch(SmallDocument(), c.at, c.bytes));
    EXPECT_EQ(static_cast<bool>(storage), c.opens) << c.at;
  }
  for (int shift = 0; shift < 0x10000; ++shift) {
    const std::string bytes = {static_cast<char>(shift), static_cast<char>(shift >> 8)};
    const auto storage = OpenDocument(Patch(SmallDocument(), 30, bytes));
    ASSERT_EQ(static_cast<bool>(storage), shift == 9 || shift == 12) << shift;
    if (storage) ReadStream(storage.get(), L"Long");
  }
}

TEST(CompoundReader, SurvivesEveryCut) {
  const std::string whole = SmallDocument();
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    const std::string bytes = whole.substr(0, size);
    EXPECT_EQ(compound::HasSignature(MemorySource(bytes)), size >= 8);
    const auto storage = OpenDocument(bytes);
    ASSERT_EQ(static_cast<bool>(storage), size >= 512) << size;
    const std::string content = ReadStream(storage.get(), L"Long");
    // The directory comes late and the table last: all of the file, or the first sector at most.
    if (content != NOT_THERE) {
      ASSERT_EQ(content, Content(content.size())) << size;
    }
    ReadStream(storage.get(), L"Short");
  }
}

TEST(CompoundReader, SurvivesEveryDamagedByte) {
  const std::string whole = SmallDocument();
  for (std::size_t at = 0; at < whole.size(); ++at) {
    if (at == LONG_AT) at = MINI_FAT_AT;  // the contents themselves are not looked at
    for (const char value : {'\0', '\1', '\x7F', '\xFF'}) {
      const auto storage = OpenDocument(Patch(whole, at, std::string(1, value)));
      ReadStream(storage.get(), L"Long");
      ReadStream(storage.get(), L"Short");
      CLSID classId;
      if (storage) compound::ReadClass(storage.get(), &classId);
    }
  }
}

}  // namespace
}  // namespace typescout::tests
