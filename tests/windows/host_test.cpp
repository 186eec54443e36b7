// Our use of the system: which files are opened, however their paths are written, and where modules
// are looked for.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include "host/config.h"
#include "host/library.h"
#include "host/owners.h"
#include "tests/samples/sample.h"
#include "tests/support/temp_folder.h"
#include "tests/windows/other_program.h"
#include "typescout/typescout.h"

namespace typescout::tests {
namespace {

namespace fs = std::filesystem;
using TvnPlatform::TvnStringT;
using TvnUtils::TvnLibrary;

const fs::path OUR_FOLDER = fs::path(TESTS_FOLDER);

std::wstring WithSlashes(std::wstring path) {
  std::replace(path.begin(), path.end(), L'\\', L'/');
  return path;
}

bool Opens(const fs::path& path) { return FileOwner().Open(path.c_str()); }

TEST(WindowsFile, OpensOnlyFilesOnDisk) {
  const TempFolder folder;
  const std::wstring pipeName = L"\\\\.\\pipe\\typescout-test";
  const Held pipe = HoldPipe(pipeName.c_str());
  EXPECT_TRUE(Opens(folder.Write("a file", "content")));
  const std::wstring drive = L"\\\\.\\" + folder.path().root_name().wstring();
  for (const std::wstring& other :
       {folder.path().wstring(), (folder.path() / "").wstring(), std::wstring(L"NUL"), pipeName,
        drive, std::wstring(L"\\\\.\\PhysicalDrive0"),
        std::wstring(L"\\\\server.invalid\\share\\file")}) {
    EXPECT_FALSE(Opens(other)) << other;
  }
}

// Other programs can go on writing to the file and delete it.
TEST(WindowsFile, StaysOpenToOtherPrograms) {
  const TempFolder folder;
  const fs::path path = folder.Write("written", "0123456789");
  const Held writer = HoldFile(path, ALL, ALL);
  FileOwner file;
  ASSERT_TRUE(file.Open(path.c_str()));
  EXPECT_NE(HoldFile(path, ALL, ALL), nullptr) << "for writing and deleting";
  EXPECT_TRUE(fs::remove(path));
  char bytes[10];
  EXPECT_EQ(file->Read(bytes, 10), 10u);
  EXPECT_EQ(std::string(bytes, 10), "0123456789");
}

constexpr int PNG = 0x0322;
const std::string PNG_BYTES = "\x89PNG\r\n\x1A\n"s;

TEST(WindowsModule, TakesPathsAsWindowsWritesThem) {
  const TempFolder folder;
  const std::wstring plain = folder.Write("sea.png", PNG_BYTES).wstring();
  const std::wstring wave = folder.Write(L"\U0001F30A\u00FC\u6D77.png", PNG_BYTES).wstring();
  fs::current_path(folder.path());
  for (const std::wstring& path :
       {plain, wave, WithSlashes(wave), L"\\\\?\\" + wave, std::wstring(L"sea.png"),
        plain.substr(0, 2) + L"sea.png", plain.substr(2)}) {
    EXPECT_EQ(TypeScoutFile(path.c_str()), PNG) << path;
  }
  // A stream of the file, a machine that is not there, and of two names a half.
  for (const wchar_t* path :
       {L"sea.png:stream", L"\\\\server.invalid\\share\\sea.png", L"\\\\", L"\xD83C.png"}) {
    EXPECT_EQ(TypeScoutFile(path), 0) << path;
  }
  fs::current_path(OUR_FOLDER);  // so that the other one can go
}

TEST(WindowsFile, DoesNotOpenWhenAnotherProgramDeniesIt) {
  const TempFolder folder;
  const fs::path path = folder.Write("denied", "content");
  const Held held = HoldFile(path, READS, WRITES);
  EXPECT_FALSE(Opens(path));
}

bool Loads(const fs::path& name, const char* symbol = "Answer") {
  TvnLibrary library((TvnStringT<wchar_t>(name.c_str())));
  const bool loads = library.Load() && library.GetSymbol(symbol) != nullptr;
  library.Unload();
  return loads;
}

// Lays the tests' own module there.
fs::path PutPlugin(const fs::path& path) {
  fs::remove(path);  // libstdc++ for Windows cannot overwrite
  fs::copy_file(OUR_FOLDER / "plugin.dll", path);
  return path;
}

TEST(WindowsLibrary, IsLookedForBesideUsAndInTheSystem) {
  const TempFolder elsewhere;
  const fs::path other = PutPlugin(elsewhere.path() / "typescout_other.dll");
  fs::current_path(elsewhere.path());
  const std::wstring searched = _wgetenv(L"PATH");
  _wputenv((L"PATH=" + elsewhere.path().wstring()).c_str());
  EXPECT_FALSE(Loads("typescout_other")) << "in the current folder and along PATH";
  EXPECT_FALSE(Loads("typescout_other.dll"));
  {
    const Held loaded = HoldModule(other);
    ASSERT_NE(loaded, nullptr);
    EXPECT_FALSE(Loads("typescout_other")) << "loaded by the program from elsewhere";
  }
  const fs::path beside = PutPlugin(OUR_FOLDER / "typescout_other.dll");
  EXPECT_TRUE(Loads("typescout_other"));
  EXPECT_TRUE(Loads("typescout_other.dll"));
  fs::remove(beside);
  fs::current_path(OUR_FOLDER);
  _wputenv((L"PATH=" + searched).c_str());
  EXPECT_TRUE(Loads("version", "GetFileVersionInfoSizeW")) << "the system's";
}

TEST(WindowsLibrary, IsTakenFromWhereAPathSays) {
  const TempFolder folder;
  folder.Write("with.dot/damaged.dll", "MZ and nothing more");
  const std::wstring path = (folder.path() / "with.dot" / "filter").wstring();
  PutPlugin(path + L".dll");
  PutPlugin(path + L".flt");
  EXPECT_TRUE(Loads(path)) << "the dot of a folder is no extension";
  EXPECT_TRUE(Loads(WithSlashes(path)));
  EXPECT_TRUE(Loads(path + L".flt"));
  EXPECT_FALSE(Loads(path + L".other"));
  EXPECT_FALSE(Loads(folder.path()));
  EXPECT_FALSE(Loads(folder.path() / "with.dot" / "damaged.dll"));
  // Neither relative to a folder or a drive, nor a device.
  fs::current_path(folder.path());
  for (const std::wstring& other :
       {std::wstring(L"with.dot\\filter.dll"), path.substr(0, 2) + L"with.dot\\filter.dll",
        path.substr(2), L"\\\\.\\" + path}) {
    EXPECT_FALSE(Loads(other)) << other;
  }
  fs::current_path(OUR_FOLDER);
}

TEST(WindowsLibrary, StaysInMemoryUnlessUnloaded) {
  const TempFolder folder;
  const fs::path left = fs::canonical(OUR_FOLDER) / "plugin.dll";
  const fs::path unloaded = PutPlugin(folder.path() / "unloaded.dll");
  for (const fs::path& path : {left, unloaded}) {
    TvnLibrary library((TvnStringT<wchar_t>(path.c_str())));
    ASSERT_TRUE(library.Load());
    EXPECT_TRUE(path == left || library.Unload());
  }
  EXPECT_TRUE(IsModuleLoaded(left));
  EXPECT_FALSE(IsModuleLoaded(unloaded));
}

TEST(WindowsModule, LeavesNoMemoryBehindWhenItIsUnloaded) {
  const TempFolder folder;
  const fs::path module = folder.path() / "copy.dll";
  fs::copy_file(OUR_FOLDER / "typescout.dll", module);
  const fs::path file = folder.Write("sea.png", PNG_BYTES);
  constexpr int TIMES = 300;
  std::size_t before = 0;
  for (int i = 0; i < TIMES; ++i) {
    {
      const Held loaded = HoldModule(module);
      int answer = 0;
      ASSERT_TRUE(ScanTwice(loaded, file, &answer));
      EXPECT_EQ(answer, PNG);
    }
    ASSERT_FALSE(IsModuleLoaded(module));
    if (i == 0) before = HeapInUse();
  }
  EXPECT_LT(HeapInUse(), before + TIMES * 16);
}

TEST(WindowsModule, LetsTheExceptionsOfModulesPass) {
  const fs::path filters = fs::canonical(OUR_FOLDER) / "throwing";  // stays loaded, so it must stay
  fs::create_directories(filters);
  PutPlugin(filters / "TvnPDFImport.dll");
  _wputenv((L"TVN_FILTERS_DIR=" + filters.wstring()).c_str());
  const TempFolder folder;
  const fs::path path = folder.Write("a.pdf", "%PDF-1.7");
  for (int i = 0; i < 3; ++i) {
    EXPECT_THROW(CheckOneFilter(path.c_str(), 0x0535, 0), std::runtime_error);
  }
  _wputenv(L"TVN_FILTERS_DIR=");
}

TEST(WindowsConfig, TellsTheFolderOfFilters) {
  _wputenv(L"TVN_FILTERS_DIR=");
  EXPECT_EQ(fs::path(TvnConfig::INIGetFiltersDir().View()), fs::canonical(OUR_FOLDER) / "filters");
  const std::wstring longName = L"C:\\" + std::wstring(300, L'\u00FC');
  _wputenv((L"TVN_FILTERS_DIR=" + longName).c_str());
  EXPECT_EQ(TvnConfig::INIGetFiltersDir().View(), longName);
  _wputenv(L"TVN_FILTERS_DIR=");
}

}  // namespace
}  // namespace typescout::tests
