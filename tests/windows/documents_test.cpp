// Compound documents, which are the system's to read and to write: where its reader and ours agree,
// and documents that somebody else holds open.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "core/probed_file.h"
#include "tests/samples/sample.h"
#include "tests/support/compound_writer.h"
#include "tests/support/damaged_documents.h"
#include "tests/support/temp_folder.h"
#include "tests/windows/other_program.h"
#include "typescout/typescout.h"

namespace typescout::tests {
namespace {

// What a detector gets of the stream.
std::size_t BytesOf(IStorage* storage, const wchar_t* name) {
  InterfaceOwner<IStream> stream;
  if (storage == nullptr || storage->OpenStream(name, nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0,
                                                stream.Receive()) != S_OK) {
    return NO_STREAM;
  }
  std::string bytes(60'000, '\0');
  std::uint32_t read = 0;
  stream->Read(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &read);
  return read;
}

// Sizes of the long and the short stream.
using Sizes = std::pair<std::size_t, std::size_t>;

// Where Wine's reader and ours differ, what Wine's makes of it; docs/windows.md has the reasons.
constexpr Sizes NOT_OPENED = {NO_STREAM, NO_STREAM};
const std::map<std::string, std::optional<Sizes>> DIFFERENT = {
    {"the count of DIFAT sectors", NOT_OPENED},
    {"the first sector of the mini table, outside", Sizes{5'000, 0}},
    {"the first sector of the table, outside", NOT_OPENED},
    {"a chain that points to itself", std::nullopt},  // not asked: it does not come back
    {"a chain that goes back", std::nullopt},
    {"a chain that leaves the file", Sizes{0, 200}},
    {"a chain that enters a free sector", Sizes{0, 200}},
    {"a mini chain that points to itself", Sizes{5'000, 200}},
    {"a mini stream that lies outside", NOT_OPENED},
    {"the size of the mini stream", Sizes{5'000, 0}},
    {"a sibling outside", std::nullopt},
    {"a name that is too long", Sizes{5'000, 200}},
};

TEST(WindowsDocuments, AreReadAsOursButForKnownDifferences) {
  const TempFolder folder;
  std::vector<DamagedDocument> documents = DamagedDocuments();
  for (const int version : {3, 4}) {
    for (const std::size_t freeSectors : {0u, 14'000u}) {
      documents.push_back({"no damage, version " + std::to_string(version),
                           WriteCompound({{L"Long", DocumentContent(9'000)}, {L"Short", "x"}},
                                         {.version = version, .freeSectors = freeSectors}),
                           9'000, 1});
    }
  }
  std::size_t different = 0;
  for (const DamagedDocument& document : documents) {
    const auto known = DIFFERENT.find(document.what);
    std::optional<Sizes> wanted = Sizes{document.longSize, document.shortSize};
    if (known != DIFFERENT.end()) {
      ++different;
      EXPECT_NE(known->second, wanted) << document.what;
      wanted = known->second;
    }
    if (!wanted) continue;
    const auto path = folder.Write("damaged", document.bytes);
    ProbedFile file;
    IStorage* const storage = file.Document(path.c_str(), ProbedFile::WhenLocked::SHARE);
    const Sizes systems = {BytesOf(storage, L"Long"), BytesOf(storage, L"Short")};
    EXPECT_EQ(systems, *wanted) << document.what;
  }
  EXPECT_EQ(different, DIFFERENT.size());
}

constexpr int DRAWING_OBJECT = 0x0706;
const wchar_t* const DRAWING_OBJECT_CLASS = L"{DE14F420-AC1C-11CE-BE26-DB67235E2689}";
const wchar_t* const ANOTHER_CLASS = L"{DE14F420-AC1C-11CE-BE26-DB67235E2688}";

// The samples that are documents: as they are, with every stream made long enough to leave the mini
// stream (and some class), and with the class of the suite's drawing objects. run.sh has the module
// answer about them on both systems.
TEST(WindowsDocuments, AreWrittenForBothSystems) {
  constexpr std::size_t LONG = 4'096;  // [MS-CFB] 2.2, the cutoff of the mini stream
  const std::filesystem::path documents = std::filesystem::path(TESTS_FOLDER) / "documents";
  std::filesystem::remove_all(documents);
  int number = 1000;
  for (const Sample& sample : AllSamples()) {
    if (sample.streams.empty()) continue;
    auto longStreams = sample.streams;
    for (auto& [name, content] : longStreams) content.resize(std::max(content.size(), LONG));
    const std::filesystem::path folder = documents / std::to_string(++number);
    const auto write = [&](const char* kind, const wchar_t* rootClass, const auto& streams) {
      const std::filesystem::path path = folder / kind / sample.path;
      std::filesystem::create_directories(path.parent_path());
      EXPECT_TRUE(WriteDocument(path, rootClass, streams)) << sample.name << ", " << kind;
    };
    write("short", L"", sample.streams);
    write("long", ANOTHER_CLASS, longStreams);
    write("object", DRAWING_OBJECT_CLASS, sample.streams);
  }
}

struct Range {
  std::uint32_t first = 0, count = 0;
};
// Far behind every document are bytes by whose locks the programs that share it agree ([MS-CFB]
// 2.8, the range lock sector).
constexpr Range BY_A_TRANSACTION = {.first = 0x7FFFFFA7, .count = 1};
constexpr Range ENTIRELY = {.first = 0, .count = 0xFFFFFFFF};

// A document that somebody else has open is tried once more only when the first answer is one of
// two, whatever a second try would have brought.
TEST(WindowsDocuments, AreTriedOnceMoreWhenLocked) {
  constexpr auto OK = static_cast<std::uint32_t>(S_OK);
  constexpr auto LOCKED = static_cast<std::uint32_t>(STG_E_LOCKVIOLATION);
  constexpr std::uint32_t NOT_SHARED = 0x80030020;
  const struct {
    const char* name;
    Access what, others;
    Range lock;
    std::uint32_t first, second;  // what the system answers to the two ways of opening
    bool opens;
  } CASES[] = {
      {"read by one who shares all", READS, ALL, {}, OK, OK, true},
      {"read by one who denies writing", READS, READS, {}, OK, OK, true},
      {"read by one who denies reading", READS, WRITES, {}, NOT_SHARED, NOT_SHARED, false},
      {"written by one who shares all", WRITES, ALL, {}, NOT_SHARED, OK, false},
      {"locked as by a transaction", READS, ALL, BY_A_TRANSACTION, LOCKED, OK, true},
      {"locked from end to end", READS, ALL, ENTIRELY, LOCKED, LOCKED, false},
  };
  const TempFolder folder;
  const std::filesystem::path path = folder.path() / "document";
  ASSERT_TRUE(WriteDocument(path, DRAWING_OBJECT_CLASS, {}));
  for (const auto& c : CASES) {
    const Held held = HoldFile(path, c.what, c.others);
    ASSERT_NE(held, nullptr) << c.name;
    ASSERT_TRUE(c.lock.count == 0 || Lock(held, c.lock.first, c.lock.count)) << c.name;
    EXPECT_EQ(OpenDocumentAnswer(path, 0x20), c.first) << c.name;
    EXPECT_EQ(OpenDocumentAnswer(path, 0x10040), c.second) << c.name;
    ProbedFile file;
    EXPECT_EQ(file.Document(path.c_str(), ProbedFile::WhenLocked::SHARE) != nullptr, c.opens)
        << c.name;
    // The class is asked for without a second try.
    EXPECT_EQ(TypeScoutFile(path.c_str()) == DRAWING_OBJECT, c.first == OK) << c.name;
  }
}

}  // namespace
}  // namespace typescout::tests
