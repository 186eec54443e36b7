// What only a POSIX system has: names of any bytes and special files.
#include <dirent.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

#include "host/owners.h"
#include "host/posix/regular_file.h"
#include "host/posix/wide_path.h"
#include "tests/samples/sample.h"
#include "tests/support/temp_folder.h"
#include "typescout/typescout.h"

// Stands in for the system's function: every other call is interrupted, and one byte is read.
bool readsAreShort = false;

extern "C" ssize_t pread(int descriptor, void* bytes, size_t count, off_t offset) {
  static bool isInterrupted = false;
  isInterrupted = readsAreShort && !isInterrupted;
  if (!isInterrupted) {
    return syscall(SYS_pread64, descriptor, bytes, readsAreShort ? 1 : count, offset);
  }
  errno = EINTR;
  return -1;
}

namespace typescout::tests {
namespace {

namespace fs = std::filesystem;

const std::string PNG = "\x89PNG\r\n\x1A\n"s;

int OpenDescriptors() {
  int count = 0;
  DIR* folder = opendir("/proc/self/fd");
  while (readdir(folder) != nullptr) ++count;
  closedir(folder);
  return count;
}

class Posix : public testing::Test {
 protected:
  ~Posix() override { EXPECT_EQ(OpenDescriptors(), descriptors_); }

  std::wstring Wide(const std::string& name) const {
    return std::wstring(posix_host::WidePath((folder_.path() / name).string()).View());
  }
  int Scan(const std::string& name) const { return TypeScoutFile(Wide(name).c_str()); }

  const TempFolder folder_;

 private:
  const int descriptors_ = OpenDescriptors();
};

TEST(PathBytes, TurnsWidePathsIntoBytes) {
  const struct {
    std::wstring path;
    const char* bytes;
  } CASES[] = {
      {L"", ""},
      {L"/a\\b", "/a\\b"},
      {L"\x7F\x80\x7FF\x800\xFFFF", "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF"},
      {L"\xD7FF\xE000", "\xED\x9F\xBF\xEE\x80\x80"},
      {{static_cast<wchar_t>(0x10000), static_cast<wchar_t>(0x10FFFF)},
       "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
      {{static_cast<wchar_t>(0xDC80), static_cast<wchar_t>(0xDCFF)}, "\x80\xFF"},
  };
  for (const auto& c : CASES) {
    EXPECT_STREQ(posix_host::PathBytes(c.path.c_str()).get(), c.bytes);
    EXPECT_EQ(posix_host::WidePath(c.bytes).View(), c.path) << c.bytes;
  }
  for (const int c : {0xD800, 0xDBFF, 0xDC00, 0xDC7F, 0xDD00, 0xDFFF, 0x110000, 0x7FFFFFFF, -1}) {
    const std::wstring path = {L'a', static_cast<wchar_t>(c)};
    EXPECT_EQ(posix_host::PathBytes(path.c_str()).get(), nullptr) << std::hex << c;
  }
  EXPECT_EQ(posix_host::PathBytes(nullptr).get(), nullptr);
  const std::wstring longest(259, static_cast<wchar_t>(0x10FFFF));
  ASSERT_NE(posix_host::PathBytes(longest.c_str()).get(), nullptr);
  EXPECT_EQ(std::strlen(posix_host::PathBytes(longest.c_str()).get()), 4 * 259u);
}

TEST(PathBytes, GivesEveryNameBack) {
  // No valid UTF-8: bytes alone, cut, too long, surrogates, beyond the last character.
  for (const char* bytes : {"\x80", "\xC3", "\xC3(", "\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80",
                            "\xF4\x90\x80\x80", "\xF0\x9F\x98", "\xFF\xFE", "a\xE9z"}) {
    EXPECT_STREQ(posix_host::PathBytes(posix_host::WidePath(bytes)).get(), bytes);
  }
}

TEST_F(Posix, OpensNamesOfAnyBytes) {
  for (const char* name : {"\xC3\xA9", "\xE9", "\xF0\x9F\x98\x80", "a\nb", "\xED\xB2\x80", "\\"}) {
    folder_.Write(name, PNG);
    EXPECT_EQ(Scan(name), 0x0322) << name;
  }
}

TEST_F(Posix, OpensRegularFilesOnly) {
  const std::string fifo = folder_.path() / "fifo";
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  std::string(folder_.path() / "socket").copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  close(listener);
  fs::create_directory(folder_.path() / "folder");
  fs::create_symlink("/dev/zero", folder_.path() / "device");
  fs::create_symlink("loop", folder_.path() / "loop");
  for (const char* name : {"fifo", "socket", "folder", "device", "loop"}) {
    EXPECT_EQ(Scan(name), 0) << name;
    posix_host::RegularFile file;
    errno = 0;
    EXPECT_FALSE(file.Open(Wide(name).c_str())) << name;
    EXPECT_NE(errno, 0) << name;
    // The caller's bytes stand in, and the compound-document test is as careful.
    unsigned char png[] = "\x89PNG\r\n\x1A\n";
    int index = 40;
    EXPECT_EQ(CheckFiltersFromList(Wide(name).data(), &index, 1, 8, png, 0), 0x0322);
  }
}

TEST_F(Posix, ReadsOnAfterShortReads) {
  folder_.Write("file", "0123456789");
  posix_host::RegularFile file;
  ASSERT_TRUE(file.Open(Wide("file").c_str()));
  readsAreShort = true;
  std::string bytes(8, '?');
  EXPECT_EQ(file.ReadAt(1, bytes.data(), 8), 8u);
  EXPECT_EQ(bytes, "12345678");
  EXPECT_EQ(file.ReadAt(9, bytes.data(), 8), 1u);
  readsAreShort = false;
}

TEST_F(Posix, ReadsBeyondFourGigabytes) {
  const fs::path path = folder_.Write("huge", "start");
  constexpr std::uint64_t SIZE = 0x1'4000'0000;
  if (truncate(path.c_str(), SIZE) != 0) GTEST_SKIP() << "no sparse files here";
  posix_host::RegularFile file;
  ASSERT_TRUE(file.Open(Wide("huge").c_str()));
  char bytes[4] = {1, 1, 1, 1};
  EXPECT_EQ(file.ReadAt(0xFFFF'FFFF'FFFF'FFFF, bytes, 4), 0u);
  FileOwner suites;
  ASSERT_TRUE(suites.Open(Wide("huge").c_str()));
  EXPECT_EQ(suites->GetLength(), SIZE);
  ASSERT_TRUE(suites.SeekTo(SIZE - 2));
  EXPECT_EQ(suites->Read(bytes, 4), 2u);
}

TEST_F(Posix, LeavesNothingOpenForAnyAnswer) {
  folder_.Write("png", PNG);
  folder_.Write("text", "text\n");
  folder_.Write("document", "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"s + Fill(600));
  for (const char* name : {"png", "text", "document", "missing"}) Scan(name);
}

}  // namespace
}  // namespace typescout::tests
