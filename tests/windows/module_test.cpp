// The module among other programs: paths as Windows writes them, documents that are held open, and
// the exception that leaves it.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "core/file_context.h"
#include "tests/samples/sample.h"
#include "tests/support/temp_folder.h"
#include "tests/windows/other_program.h"
#include "typescout/typescout.h"

namespace typescout::tests {
namespace {

namespace fs = std::filesystem;

constexpr int PNG = 0x0322;
const std::string PNG_BYTES = Bytes("\x89PNG\r\n\x1A\n");
constexpr int DRAWING_OBJECT = 0x0706;
const wchar_t* const DRAWING_OBJECT_CLASS = L"{DE14F420-AC1C-11CE-BE26-DB67235E2689}";

int Ask(const fs::path& path) { return TypeScoutFile(path.c_str()); }

// Comes back to where it was.
class InFolder {
 public:
  explicit InFolder(const fs::path& folder) { fs::current_path(folder); }
  InFolder(const InFolder&) = delete;
  InFolder& operator=(const InFolder&) = delete;
  ~InFolder() { fs::current_path(before_); }

 private:
  fs::path before_ = fs::current_path();
};

TEST(WindowsModule, TakesPathsAsWindowsWritesThem) {
  const TempFolder folder;
  const fs::path plain = folder.Write("sea.png", PNG_BYTES);
  const fs::path wave = folder.Write(L"\U0001F30A\u00FC\u6D77.png", PNG_BYTES);
  EXPECT_EQ(wave.filename().native().size(), 8u) << "the wave takes two units";
  EXPECT_EQ(Ask(plain), PNG);
  EXPECT_EQ(Ask(wave), PNG);
  std::wstring slashes = wave.wstring();
  for (wchar_t& c : slashes) c = c == L'\\' ? L'/' : c;
  EXPECT_EQ(Ask(slashes), PNG);
  EXPECT_EQ(Ask(L"\\\\?\\" + wave.wstring()), PNG) << "past the parser of paths";

  const InFolder there(folder.path());
  EXPECT_EQ(Ask("sea.png"), PNG);
  EXPECT_EQ(Ask(plain.root_name().wstring() + L"sea.png"), PNG) << "relative to a drive";
  EXPECT_EQ(Ask(L"\\" + plain.relative_path().wstring()), PNG) << "rooted, on the current drive";
  EXPECT_EQ(Ask("sea.png:stream"), 0);
  EXPECT_EQ(Ask(L"\\\\server.invalid\\share\\sea.png"), 0);
  EXPECT_EQ(Ask(L"\\\\"), 0);
  EXPECT_EQ(Ask(L"\xD83C.png"), 0) << "half a character";
}

TEST(WindowsModule, Takes259Units) {
  const TempFolder folder;
  // The name's last character takes two units, so that the limit is one of units.
  const auto pathOf = [&folder](std::size_t length) {
    std::wstring path = folder.path().wstring();
    while (path.size() + 100 < length) path += L'\\' + std::wstring(60, L'd');
    fs::create_directories(path);
    path += L'\\' + std::wstring(length - path.size() - 3, L'n') + L"\U0001F30A";
    return path;
  };
  const std::wstring longest = pathOf(259);
  const std::wstring tooLong = pathOf(260);
  ASSERT_EQ(longest.size(), 259u);
  ASSERT_EQ(tooLong.size(), 260u);
  for (const std::wstring& path : {longest, tooLong}) {
    const fs::path unlimited = L"\\\\?\\" + path;
    std::ofstream(unlimited, std::ios::binary) << PNG_BYTES;
    ASSERT_EQ(fs::file_size(unlimited), PNG_BYTES.size());
  }
  EXPECT_EQ(Ask(longest), PNG);
  EXPECT_EQ(Ask(tooLong), 0);
}

TEST(WindowsModule, ReadsTheClassOfARealDocument) {
  const TempFolder folder;
  const fs::path object = folder.path() / "object";
  const fs::path other = folder.path() / "other";
  const fs::path none = folder.path() / "none";
  ASSERT_TRUE(WriteDocument(object, DRAWING_OBJECT_CLASS, {}));
  ASSERT_TRUE(WriteDocument(other, L"{DE14F420-AC1C-11CE-BE26-DB67235E2688}", {}));
  ASSERT_TRUE(WriteDocument(none, L"", {}));
  EXPECT_EQ(Ask(object), DRAWING_OBJECT);
  EXPECT_NE(Ask(other), DRAWING_OBJECT);
  EXPECT_NE(Ask(none), DRAWING_OBJECT);
  EXPECT_EQ(CheckOneFilter(object.c_str(), DRAWING_OBJECT, 0), 0) << "no row has it";
}

TEST(WindowsModule, ReadsTheStreamsOfARealDocument) {
  const TempFolder folder;
  const fs::path path = folder.path() / "document";
  const std::string shortOne = "in the mini stream";
  const std::string longOne = Fill(70'000, 'l');
  ASSERT_TRUE(WriteDocument(path, L"", {{L"Short", shortOne}, {L"Long", longOne}}));
  const InterfaceOwner<IStorage> storage = OpenCompoundFile(path.c_str());
  ASSERT_TRUE(storage);
  const auto content = [&storage](const wchar_t* name) -> std::string {
    InterfaceOwner<IStream> stream;
    if (storage->OpenStream(name, nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0, stream.Receive()) !=
        S_OK) {
      return stream ? "refused, but there" : "none";
    }
    std::string bytes(80'000, 'x');
    std::uint32_t count = 0;
    stream->Read(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &count);
    bytes.resize(count);
    return bytes;
  };
  EXPECT_EQ(content(L"SHORT"), shortOne);
  EXPECT_EQ(content(L"Long"), longOne);
  EXPECT_EQ(content(L"Longer"), "none");
}

struct Lock {
  std::uint32_t first = 0, count = 0;
};
// Far behind every document are bytes by whose locks the programs that share it agree ([MS-CFB]
// 2.8, the range lock sector).
constexpr Lock BY_A_TRANSACTION = {.first = 0x7FFFFFA7, .count = 1};
constexpr Lock ENTIRELY = {.first = 0, .count = 0xFFFFFFFF};

// A document that somebody else has open is tried once more only when the first answer is one of
// two, whatever a second try would have brought.
TEST(WindowsModule, TriesALockedDocumentOnceMore) {
  constexpr auto OK = static_cast<std::uint32_t>(S_OK);
  constexpr auto LOCKED = static_cast<std::uint32_t>(STG_E_LOCKVIOLATION);
  constexpr std::uint32_t NOT_SHARED = 0x80030020;
  struct Case {
    const char* name;
    Access what, others;
    Lock lock;
    std::uint32_t first, second;  // what the system answers to the two ways of opening
    bool opens;
  };
  const Case cases[] = {
      {"read by one who shares all", READS, ALL, {}, OK, OK, true},
      {"read by one who denies writing", READS, READS, {}, OK, OK, true},
      {"read by one who denies reading", READS, WRITES, {}, NOT_SHARED, NOT_SHARED, false},
      {"read by one who denies both", READS, NOTHING, {}, NOT_SHARED, NOT_SHARED, false},
      {"written by one who shares all", WRITES, ALL, {}, NOT_SHARED, OK, false},
      {"written by one who denies writing", WRITES, READS, {}, NOT_SHARED, OK, false},
      {"written by one who denies reading", WRITES, WRITES, {}, NOT_SHARED, NOT_SHARED, false},
      {"locked as by a transaction", READS, ALL, BY_A_TRANSACTION, LOCKED, OK, true},
      {"locked from end to end", READS, ALL, ENTIRELY, LOCKED, LOCKED, false},
  };
  const TempFolder folder;
  const fs::path path = folder.path() / "document";
  ASSERT_TRUE(WriteDocument(path, DRAWING_OBJECT_CLASS, {}));
  for (const Case& c : cases) {
    const HeldFile held(path, c.what, c.others);
    ASSERT_TRUE(held.IsHeld()) << c.name;
    ASSERT_TRUE(c.lock.count == 0 || held.Lock(c.lock.first, c.lock.count)) << c.name;
    EXPECT_EQ(OpenDocumentAnswer(path, 0x20), c.first) << c.name;
    EXPECT_EQ(OpenDocumentAnswer(path, 0x10040), c.second) << c.name;
    EXPECT_EQ(static_cast<bool>(OpenCompoundFile(path.c_str())), c.opens) << c.name;
    // The class is asked for without a second try.
    EXPECT_EQ(Ask(path) == DRAWING_OBJECT, c.first == OK) << c.name;
  }
}

TEST(WindowsModule, LooksAtTheCallersBytesWhenTheFileIsDenied) {
  const TempFolder folder;
  const fs::path path = folder.Write("denied", "no picture");
  std::string bytes = PNG_BYTES;
  const auto ask = [&] {
    int ids[] = {PNG};
    return CheckFiltersFromIDList(path.c_str(), ids, 1, static_cast<int>(bytes.size()),
                                  reinterpret_cast<unsigned char*>(bytes.data()), 0);
  };
  EXPECT_EQ(ask(), 0);
  const HeldFile held(path, READS, WRITES);
  EXPECT_EQ(ask(), PNG);
}

}  // namespace
}  // namespace typescout::tests
