// Our use of the system: which files are opened, and where modules are looked for.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "host/config.h"
#include "host/library.h"
#include "host/owners.h"
#include "host/path.h"
#include "tests/support/temp_folder.h"
#include "tests/windows/other_program.h"

namespace typescout::tests {
namespace {

namespace fs = std::filesystem;
using TvnPlatform::TvnStringT;
using TvnUtils::TvnLibrary;

bool Opens(const fs::path& path) { return FileOwner().Open(path.c_str()); }

TEST(WindowsFile, OpensOnlyFilesOnDisk) {
  const TempFolder folder;
  const fs::path drive = folder.path().root_name();
  const WaitingPipe pipe(L"\\\\.\\pipe\\typescout-test");
  EXPECT_TRUE(Opens(folder.Write("a file", "content")));
  EXPECT_FALSE(Opens(folder.path())) << "a folder";
  EXPECT_FALSE(Opens(folder.path() / "")) << "a folder, with a separator";
  EXPECT_FALSE(Opens("NUL")) << "the device that swallows everything";
  EXPECT_FALSE(Opens(L"\\\\.\\pipe\\typescout-test")) << "a pipe";
  EXPECT_FALSE(Opens(L"\\\\.\\" + drive.wstring())) << "a drive";
  EXPECT_FALSE(Opens(L"\\\\.\\PhysicalDrive0")) << "a disk";
  EXPECT_FALSE(Opens(L"\\\\server.invalid\\share\\file")) << "a machine that is not there";
}

// Whoever works on a file goes on as if nobody looked.
TEST(WindowsFile, IsNobodyElsesBusiness) {
  const TempFolder folder;
  const fs::path path = folder.Write("written", "0123456789");
  const HeldFile writer(path, ALL, ALL);
  FileOwner file;
  ASSERT_TRUE(file.Open(path.c_str()));
  const HeldFile another(path, ALL, ALL);
  EXPECT_TRUE(another.IsHeld()) << "for writing and deleting";
  EXPECT_TRUE(fs::remove(path));
  char bytes[10];
  EXPECT_EQ(file->Read(bytes, 10), 10u);
  EXPECT_EQ(std::string(bytes, 10), "0123456789");
}

TEST(WindowsFile, ReadsBeyondFourGigabytes) {
  const TempFolder folder;
  constexpr std::uint64_t FOUR_GIGABYTES = std::uint64_t{1} << 32;
  const fs::path path = folder.Write("large", "start");
  fs::resize_file(path, FOUR_GIGABYTES + 3);
  FileOwner file;
  ASSERT_TRUE(file.Open(path.c_str()));
  EXPECT_EQ(file->GetLength(), FOUR_GIGABYTES + 3);
  char bytes[8] = "xxxxxxx";
  EXPECT_TRUE(file.SeekTo(FOUR_GIGABYTES));
  EXPECT_EQ(file->Read(bytes, 8), 3u);
  EXPECT_EQ(std::string(bytes, 8), std::string("\0\0\0xxxx\0", 8));
  EXPECT_EQ(file->Read(bytes, 1), 0u);
  EXPECT_FALSE(file.SeekTo(FOUR_GIGABYTES + 4));
}

bool Loads(const fs::path& name) {
  TvnLibrary library((TvnStringT<wchar_t>(name.c_str())));
  return library.Load() && library.GetSymbol("Answer") != nullptr;
}

// Goes to a folder, puts it on PATH too, and comes back.
class WorkingIn {
 public:
  explicit WorkingIn(const fs::path& folder) {
    fs::current_path(folder);
    _wputenv((L"PATH=" + folder.wstring()).c_str());
  }
  WorkingIn(const WorkingIn&) = delete;
  WorkingIn& operator=(const WorkingIn&) = delete;
  ~WorkingIn() {
    fs::current_path(before_);
    _wputenv((L"PATH=" + path_).c_str());
  }

 private:
  fs::path before_ = fs::current_path();
  std::wstring path_ = _wgetenv(L"PATH");
};

// A copy that goes with the scope.
class Copy {
 public:
  Copy(const fs::path& from, const fs::path& to) : path_(to) {
    fs::copy_file(from, to, fs::copy_options::overwrite_existing);
  }
  Copy(const Copy&) = delete;
  Copy& operator=(const Copy&) = delete;
  ~Copy() { fs::remove(path_); }

 private:
  fs::path path_;
};

const fs::path OUR_FOLDER = fs::path(TESTS_FOLDER);
const fs::path PLUGIN = OUR_FOLDER / "plugin.dll";

TEST(WindowsLibrary, IsLookedForBesideUsAndInTheSystem) {
  const TempFolder elsewhere;
  const Copy copy(PLUGIN, elsewhere.path() / "typescout_other.dll");
  const WorkingIn there(elsewhere.path());
  EXPECT_FALSE(Loads("typescout_other")) << "in the current folder and along PATH";
  EXPECT_FALSE(Loads("typescout_other.dll"));
  {
    const LoadedModule loaded(elsewhere.path() / "typescout_other.dll");
    ASSERT_TRUE(loaded.IsLoaded());
    EXPECT_FALSE(Loads("typescout_other")) << "loaded by the program from elsewhere";
  }
  const Copy beside(PLUGIN, OUR_FOLDER / "typescout_other.dll");
  EXPECT_TRUE(Loads("typescout_other"));
  EXPECT_TRUE(Loads("typescout_other.dll"));

  TvnLibrary system(TvnStringT<wchar_t>(L"version"));
  EXPECT_TRUE(system.Load());
  EXPECT_NE(system.GetSymbol("GetFileVersionInfoSizeW"), nullptr);
}

TEST(WindowsLibrary, IsTakenFromWhereAPathSays) {
  const TempFolder folder;
  fs::create_directories(folder.path() / "with.dot");
  const Copy copy(PLUGIN, folder.path() / "with.dot" / "filter.dll");
  const Copy odd(PLUGIN, folder.path() / "with.dot" / "filter.flt");
  const std::wstring path = (folder.path() / "with.dot" / "filter").wstring();
  std::wstring slashes = path;
  for (wchar_t& c : slashes) c = c == L'\\' ? L'/' : c;
  EXPECT_TRUE(Loads(path)) << "the dot of a folder is no extension";
  EXPECT_TRUE(Loads(slashes));
  EXPECT_TRUE(Loads(path + L".flt"));
  EXPECT_FALSE(Loads(path + L".other"));
  EXPECT_FALSE(Loads(""));
  EXPECT_FALSE(Loads(folder.path()));
  EXPECT_FALSE(Loads(folder.Write("damaged.dll", "MZ and nothing more")));
}

TEST(WindowsConfig, TellsTheFolderOfFilters) {
  _wputenv(L"TVN_FILTERS_DIR=");
  EXPECT_EQ(fs::path(TvnConfig::INIGetFiltersDir().View()), fs::canonical(OUR_FOLDER) / "filters");
  const std::wstring LONG_ONE(300, L'\u00FC');
  _wputenv((L"TVN_FILTERS_DIR=" + LONG_ONE).c_str());
  EXPECT_EQ(TvnConfig::INIGetFiltersDir().View(), LONG_ONE);
  _wputenv(L"TVN_FILTERS_DIR=");
}

TEST(WindowsPath, GivesExtensionsInUpperCase) {
  const auto upper = [](const wchar_t* path) {
    return std::wstring(SystemIO::Path::GetUpperExtension(path).View());
  };
  EXPECT_EQ(upper(L"C:\\pictures.old\\sea.view.Cr2"), L".CR2");
  EXPECT_EQ(upper(L"c:/pictures.old/sea"), L"");
  EXPECT_EQ(upper(L"sea.\u00FCz\U0001F30A"), L".\u00FCZ\U0001F30A") << "ASCII letters only";
  EXPECT_EQ(upper(L"sea."), L".");
  EXPECT_EQ(upper(L""), L"");
}

}  // namespace
}  // namespace typescout::tests
