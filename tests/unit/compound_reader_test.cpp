// The reader of compound documents: it reads what was written, and less of damaged documents.
#include "host/compound/reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "host/compound/check.h"
#include "host/memory/failing_allocation.h"
#include "tests/samples/sample.h"
#include "tests/support/documents.h"
#include "tests/support/read_stream.h"

namespace typescout::tests {
namespace {

constexpr std::size_t TABLE = CONTENTS_END + 2 * 512;  // of the small document
constexpr CLSID CLASS = {0x01020304, 0x0506, 0x0708, {9, 10, 11, 12, 13, 14, 15, 16}};

InterfaceOwner<IStorage> OpenDocument(const std::string& bytes) {
  InterfaceOwner<IStorage> storage;
  const HRESULT result = compound::Open(std::make_unique<MemorySource>(bytes), storage.Receive());
  EXPECT_EQ(result == S_OK, static_cast<bool>(storage));
  return storage;
}

bool IsSound(const std::string& bytes) {
  return compound::IsSound(std::make_unique<MemorySource>(bytes));
}

TEST(CompoundReader, GivesBackWhatWasWritten) {
  std::map<std::wstring, std::string> streams = {{std::wstring(31, L'n'), "the longest name"}};
  for (const int size : {0, 1, 63, 64, 65, 512, 4'095, 4'096, 4'097, 20'000}) {
    streams[L"Stream " + std::to_wstring(size)] = DocumentContent(static_cast<std::size_t>(size));
  }
  for (const int version : {3, 4}) {
    const auto storage =
        OpenDocument(WriteCompound(streams, {.version = version, .classId = CLASS}));
    for (const auto& [name, content] : streams) {
      EXPECT_EQ(ReadStream(storage.get(), name.c_str()), content);
      EXPECT_EQ(ReadStream(storage.get(), name.c_str(), 7), content);
    }
    EXPECT_EQ(ReadStream(storage.get(), L"sTREAM 65"), DocumentContent(65));
    for (const std::wstring name : {L"Stream 6", L"Stream 655", L"", L"Root Entry", L"Stream 6\x15",
                                    L"nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn"}) {
      EXPECT_EQ(ReadStream(storage.get(), name.c_str()), NOT_THERE);
    }
    CLSID classId = {};
    EXPECT_EQ(compound::ReadClass(storage.get(), &classId), S_OK);
    EXPECT_EQ(std::memcmp(&classId, &CLASS, sizeof classId), 0);
  }
}

// The directory is searched by hashes of the names; the first two pairs of names have the same.
TEST(CompoundReader, TellsNamesApart) {
  const auto storage =
      OpenDocument(WriteCompound({{L"piovdi", "1"}, {L"cniecvze", "2"}, {L"{", "3"}}));
  EXPECT_EQ(ReadStream(storage.get(), L"["), NOT_THERE) << "no letters";
  EXPECT_EQ(ReadStream(storage.get(), L"PIOVDI"), "1");
  EXPECT_EQ(ReadStream(storage.get(), L"KXUXMV"), NOT_THERE);
  EXPECT_EQ(ReadStream(storage.get(), L"CNIECVZE"), "2");
  EXPECT_EQ(ReadStream(storage.get(), L"C"), NOT_THERE);
  const std::string unnamed = Patch(WholeDocument(), CONTENTS_END + 512 + 128 + 64, "\2\0"s);
  EXPECT_EQ(ReadStream(OpenDocument(unnamed).get(), L"L"), NOT_THERE);
}

// In version 4 a size has 64 bits; in version 3 the upper half means nothing.
TEST(CompoundReader, LooksAtTheHighHalfOfASizeInVersion4) {
  constexpr std::size_t ENTRY_IN_FILE = 4096 * 3 + 128;  // behind the mini stream and its table
  const std::string document = WriteCompound({{L"Short", "x"}}, {.version = 4});
  ASSERT_EQ(document.substr(ENTRY_IN_FILE, 3), "S\0h"s);
  const auto storage = OpenDocument(Patch(document, ENTRY_IN_FILE + 124, "\1"));
  // No short stream any more: sector 0 is the mini stream and the end of its chain.
  EXPECT_EQ(ReadStream(storage.get(), L"Short"), PadTo(4096, "x"));
}

TEST(CompoundReader, FollowsTheDifat) {
  const std::map<std::wstring, std::string> streams = {{L"Long", DocumentContent(9'000)},
                                                       {L"Short", "x"}};
  // Just within what the header names, just beyond, and with a second sector of the DIFAT.
  for (const std::size_t freeSectors : std::initializer_list<std::size_t>{13'700, 13'900, 31'000}) {
    const std::string document = WriteCompound(streams, {.freeSectors = freeSectors});
    EXPECT_TRUE(IsSound(document)) << freeSectors;
    const auto storage = OpenDocument(document);
    EXPECT_EQ(ReadStream(storage.get(), L"Long"), DocumentContent(9'000)) << freeSectors;
    EXPECT_EQ(ReadStream(storage.get(), L"Short"), "x") << freeSectors;
  }
  // The file ends within the DIFAT's last sector: no chain in what that one leads to.
  std::string cut = WriteCompound(streams, {.freeSectors = 31'000});
  cut.resize(cut.size() - 100);
  EXPECT_EQ(ReadStream(OpenDocument(cut).get(), L"Long").size(), 512u);
}

// The long stream begins in the file's last sector, the table; its chain would go on in sector 0.
TEST(CompoundReader, EndsAStreamWhereTheFileEnds) {
  constexpr std::size_t LONG_STARTS_AT = CONTENTS_END + 512 + 128 + 116;
  constexpr char LAST_SECTOR = 13;
  std::string document = Patch(WholeDocument(), LONG_STARTS_AT, std::string(1, LAST_SECTOR));
  document = Patch(document, TABLE + 4 * LAST_SECTOR, Fill(4));
  for (const std::size_t left : {1u, 412u}) {
    const std::string cut = document.substr(0, document.size() - 512 + left);
    EXPECT_EQ(ReadStream(OpenDocument(cut).get(), L"Long").size(), left);
  }
}

// The long stream's sectors 1 and 2 change places; what is read at once begins anywhere in them.
TEST(CompoundReader, FollowsAChainThatJumps) {
  const std::string order = "\2\0\0\0\3\0\0\0\1\0\0\0"s;  // behind sectors 0, 1 and 2
  const std::string content = DocumentContent(5'000);
  const std::string jumping =
      content.substr(0, 512) + content.substr(1024, 512) + content.substr(512, 512);
  const auto storage = OpenDocument(Patch(WholeDocument(), TABLE, order));
  for (const std::size_t piece : {100u, 700u, 5'000u}) {
    EXPECT_EQ(ReadStream(storage.get(), L"Long", piece), Patch(content, 0, jumping)) << piece;
  }
}

TEST(CompoundReader, KeepsAStreamAliveWithoutItsRoot) {
  InterfaceOwner<IStream> stream;
  {
    const auto storage = OpenDocument(WriteCompound({{L"Long", DocumentContent(5'000)}}));
    ASSERT_EQ(storage->OpenStream(L"Long", nullptr, 0x10, 0, stream.Receive()), S_OK);
  }
  std::string bytes(5'000, '\0');
  EXPECT_EQ(stream->AddRef(), 2u);
  EXPECT_EQ(stream->Release(), 1u);
  EXPECT_EQ(stream->Read(bytes.data(), 5'000, nullptr), S_OK);
  EXPECT_EQ(bytes, DocumentContent(5'000));
}

TEST(CompoundReader, GivesLessOfADamagedDocument) {
  for (const DamagedDocument& document : DamagedDocuments()) {
    const auto storage = OpenDocument(document.bytes);
    for (const auto& [name, size] :
         {std::pair(L"Long", document.longSize), std::pair(L"Short", document.shortSize)}) {
      const std::string content = ReadStream(storage.get(), name);
      EXPECT_EQ(content == NOT_THERE ? NO_STREAM : content.size(), size) << document.what;
    }
    EXPECT_EQ(IsSound(document.bytes), document.isSound) << document.what;
  }
}

// Of a document with N sectors, the check of the structure follows at most 2 * N.
TEST(CompoundReader, IsUnsoundWhenChainsAreShared) {
  constexpr std::size_t DIRECTORY = 512 + (1'000 + 8 + 8) * 512;
  std::string document = WriteCompound({{L"A", DocumentContent(512'000)},
                                        {L"B", DocumentContent(4'096)},
                                        {L"C", DocumentContent(4'096)}});
  for (const std::size_t entry : {2u, 3u}) {
    document = Patch(document, DIRECTORY + 128 * entry + 116, Fill(4));  // begins where A begins
    EXPECT_EQ(IsSound(document), entry == 2);
  }
}

TEST(CompoundReader, OpensOnlyWhatItUnderstands) {
  EXPECT_FALSE(OpenDocument(Patch(WholeDocument(), 7, "\xE2"))) << "the signature";
  EXPECT_TRUE(OpenDocument(Patch(WholeDocument(), 8, Fill(18, '\xFF')))) << "nothing is read there";
  // Of the versions and sizes of sectors there are two.
  for (const int real : {3, 4}) {
    const std::string document = WriteCompound({}, {.version = real});
    for (char version = 0; version < 6; ++version) {
      for (int shift = 0; shift < 0x200; ++shift) {
        const std::string header = {
            version, 0, '\xFE', '\xFF', static_cast<char>(shift), static_cast<char>(shift >> 8)};
        const bool opens = version == real && shift == (real == 3 ? 9 : 12);
        EXPECT_EQ(static_cast<bool>(OpenDocument(Patch(document, 26, header))), opens) << shift;
      }
    }
  }
}

// In a small directory a stream is found wherever it is in the tree, in a large one by the order.
TEST(CompoundReader, FindsStreamsInAnyDirectory) {
  for (const std::size_t size : {1'000u, 5'000u}) {
    std::map<std::wstring, std::string> streams;
    for (std::size_t i = 0; i < size; ++i) streams[L"s" + std::to_wstring(i)] = std::to_string(i);
    const std::string document = WriteCompound(streams);
    EXPECT_TRUE(IsSound(document));
    for (std::size_t i = 0; i < size; i += 49) {
      const std::wstring name = L"S" + std::to_wstring(i);
      ASSERT_EQ(ReadStream(OpenDocument(document).get(), name.c_str()), std::to_string(i)) << size;
    }
    for (const wchar_t* name : {L"s", L"s00", L"s5000", L"t1", L"Root Entry"}) {
      EXPECT_EQ(ReadStream(OpenDocument(document).get(), name), NOT_THERE);
    }
  }
}

// A stream that memory runs out for is not there, or ends; whatever was taken is given back.
TEST(CompoundReader, SurvivesEveryFailedAllocation) {
  const std::string bytes =
      WriteCompound({{L"Long", DocumentContent(5'000)}, {L"Short", "x"}}, {.freeSectors = 14'330});
  bool hasFailed = true;
  for (int nth = 1; hasFailed; ++nth) {
    auto source = std::make_unique<MemorySource>(bytes);
    unsigned char content[5'000];
    const memory_host::FailingAllocation failing(nth);
    InterfaceOwner<IStorage> storage;
    bool isWhole = compound::Open(std::move(source), storage.Receive()) == S_OK;
    EXPECT_EQ(isWhole, static_cast<bool>(storage));
    CLSID classId = {};
    isWhole = isWhole && compound::ReadClass(storage.get(), &classId) == S_OK;
    for (const wchar_t* name : {L"Long", L"Short"}) {
      InterfaceOwner<IStream> stream;
      if (storage) storage->OpenStream(name, nullptr, STGM_READ, 0, stream.Receive());
      std::uint32_t read = 1;
      isWhole = isWhole && stream && stream->Read(content, sizeof content, &read) == S_OK;
    }
    hasFailed = failing.HasFailed();
    EXPECT_EQ(isWhole, !hasFailed) << nth;
  }
}

TEST(CompoundReader, SurvivesEveryCut) {
  const std::string whole = WholeDocument();
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    const std::string bytes = whole.substr(0, size);
    EXPECT_EQ(compound::HasSignature(MemorySource(bytes)), size >= 8);
    const auto storage = OpenDocument(bytes);
    ASSERT_EQ(static_cast<bool>(storage), size >= CONTENTS_END + 512 + 128) << size;
    const std::string content = ReadStream(storage.get(), L"Long");
    // The directory comes late and the table last: all of the file, or the first sector at most.
    if (content != NOT_THERE) {
      ASSERT_EQ(content, DocumentContent(content.size())) << size;
    }
    ReadStream(storage.get(), L"Short");
  }
}

TEST(CompoundReader, SurvivesEveryDamagedByte) {
  const std::string whole = WholeDocument();
  for (std::size_t at = 0; at < whole.size(); ++at) {
    if (at == CONTENTS_AT) at = CONTENTS_END;  // the contents themselves are not looked at
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
