// Compound documents, which are the system's to read and to write: which it is given to open, and
// documents that another program holds open.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <tuple>

#include "core/probed_file.h"
#include "host/compound/reader.h"
#include "host/owners.h"
#include "tests/samples/sample.h"
#include "tests/support/documents.h"
#include "tests/support/read_stream.h"
#include "tests/support/temp_folder.h"
#include "tests/windows/other_program.h"
#include "typescout/typescout.h"

namespace typescout::tests {
namespace {

constexpr int DRAWING_OBJECT = 0x0706;
const wchar_t* const DRAWING_OBJECT_CLASS = L"{DE14F420-AC1C-11CE-BE26-DB67235E2689}";
const char* const WORD_8 = "\xEC\xA5\xC1";  // how a Word document begins, with a zero byte behind
const wchar_t* const ANOTHER_CLASS = L"{DE14F420-AC1C-11CE-BE26-DB67235E2688}";

// The samples that are documents: as they are, with every stream made long enough to leave the mini
// stream (and some class), and with the class of the suite's drawing objects; a document that grew;
// and documents by the tests' own writer. The stage compares what the module answers about them on
// both systems. None is refused.
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

  const auto content = [](std::size_t size) {
    return DocumentContent(size).replace(0, 4, WORD_8, 4);
  };
  std::map<std::wstring, std::string> streams = {{L"WordDocument", content(30'000)}};
  for (std::size_t i = 0; i < 400; ++i) {
    streams[L"Stream " + std::to_wstring(i)] = DocumentContent(20 * i);
  }
  EXPECT_TRUE(WriteDocument(documents / "grown", L"", streams, 500));
  const CompoundOptions OPTIONS[] = {{}, {.freeSectors = 14'000}, {.version = 4}};
  for (const CompoundOptions& options : OPTIONS) {
    std::ofstream(documents / std::to_string(++number), std::ios::binary)
        << WriteCompound(streams, options);
  }

  for (const auto& entry : std::filesystem::recursive_directory_iterator(documents)) {
    InterfaceOwner<IStorage> storage;
    EXPECT_EQ(entry.is_regular_file() &&
                  StgOpenStorage(entry.path().c_str(), nullptr, STGM_READ | STGM_SHARE_DENY_WRITE,
                                 nullptr, 0, storage.Receive()) != S_OK,
              false)
        << entry.path();
  }
}

// What a reader makes of a damaged document, in the words of docs/windows.md.
std::string InWords(IStorage* storage) {
  if (storage == nullptr) return "does not open";
  std::string words;
  for (const auto& [name, word, whole] :
       {std::tuple(L"Long", "long", 5'000u), std::tuple(L"Short", "short", 200u)}) {
    const std::string content = ReadStream(storage, name);
    if (content.size() == whole) continue;
    std::string size = std::to_string(content.size());
    if (size.size() > 3) size.insert(size.size() - 3, ",");
    words += (words.empty() ? "" : ", "s) + word + ": ";
    words += content == NOT_THERE ? "none" : size + " bytes";
  }
  return words.empty() ? "reads all" : words;
}

// DAMAGE_TABLE=write writes the document's table. Those that are not sound would keep the system's
// reader busy for minutes.
TEST(WindowsDocuments, AreReadAsTheTableSaysWhenTheyAreDamaged) {
  const TempFolder folder;
  std::string table = "| What is damaged | On Linux | On Windows |\n| --- | --- | --- |\n";
  for (const DamagedDocument& document : DamagedDocuments()) {
    const auto path = folder.Write("damaged", document.bytes);
    InterfaceOwner<IStorage> ours, systems;
    compound::Open(std::make_unique<MemorySource>(document.bytes), ours.Receive());
    const HRESULT result = StgOpenStorage(path.c_str(), nullptr, STGM_READ | STGM_SHARE_DENY_WRITE,
                                          nullptr, 0, systems.Receive());
    EXPECT_TRUE(document.isSound || result == STG_E_INVALIDHEADER) << document.what;
    table += "| " + document.what + " | " + InWords(ours.get()) + " | " + InWords(systems.get()) +
             " |\n";
  }
  std::ifstream file(WINDOWS_DOCUMENT, std::ios::binary);
  std::string document{std::istreambuf_iterator<char>(file), {}};
  const std::size_t begin = document.find("| What is damaged");
  const std::size_t end = document.find("\n\n", begin) + 1;
  if (std::getenv("DAMAGE_TABLE") != nullptr) {
    document.replace(begin, end - begin, table);
    std::ofstream(WINDOWS_DOCUMENT, std::ios::binary) << document;
  } else {
    EXPECT_EQ(document.substr(begin, end - begin), table);
  }
}

struct Range {
  std::uint32_t first = 0, count = 0;
};
// Far behind every document are bytes by whose locks the programs that share it agree ([MS-CFB]
// 2.8, the range lock sector).
constexpr Range BY_A_TRANSACTION = {.first = 0x7FFFFFA7, .count = 1};
constexpr Range ENTIRELY = {.first = 0, .count = 0xFFFFFFFF};

// A document that another program has open is tried once more only when the first answer is one of
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
