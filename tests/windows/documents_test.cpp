// The system's own reader of compound documents and ours: where they agree, and where not.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <optional>
#include <string>

#include "core/file_context.h"
#include "tests/samples/sample.h"
#include "tests/support/compound_writer.h"
#include "tests/support/damaged_documents.h"
#include "tests/support/temp_folder.h"

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

TEST(WindowsDocuments, AreReadAsOurWriterWritesThem) {
  const TempFolder folder;
  for (const int version : {3, 4}) {
    for (const std::size_t freeSectors : std::initializer_list<std::size_t>{0, 14'000}) {
      const auto path = folder.Write(
          "document", WriteCompound({{L"Long", DocumentContent(9'000)}, {L"Short", "x"}},
                                    {.version = version, .freeSectors = freeSectors}));
      const auto storage = OpenCompoundFile(path.c_str());
      EXPECT_EQ(BytesOf(storage.get(), L"Long"), 9'000u) << version << ' ' << freeSectors;
      EXPECT_EQ(BytesOf(storage.get(), L"Short"), 1u) << version << ' ' << freeSectors;
    }
  }
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

TEST(WindowsDocuments, AreReadAsOursWhenDamagedButForKnownDifferences) {
  const TempFolder folder;
  std::size_t different = 0;
  for (const DamagedDocument& document : DamagedDocuments()) {
    const auto known = DIFFERENT.find(document.what);
    std::optional<Sizes> wanted = Sizes{document.longSize, document.shortSize};
    if (known != DIFFERENT.end()) {
      ++different;
      EXPECT_NE(known->second, wanted) << document.what;
      wanted = known->second;
    }
    if (!wanted) continue;
    const auto path = folder.Write("damaged", document.bytes);
    const auto storage = OpenCompoundFile(path.c_str());
    const Sizes systems = {BytesOf(storage.get(), L"Long"), BytesOf(storage.get(), L"Short")};
    EXPECT_EQ(systems, *wanted) << document.what;
  }
  EXPECT_EQ(different, DIFFERENT.size());
}

}  // namespace
}  // namespace typescout::tests
