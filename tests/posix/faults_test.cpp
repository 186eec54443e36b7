// The module on the real system, whose calls fail, are interrupted or do half of their work at
// every moment; and what each file costs in calls, bytes and memory.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "core/registry.h"
#include "host/posix/wide_path.h"
#include "tests/posix/watched_calls.h"
#include "tests/samples/sample.h"
#include "tests/support/documents.h"
#include "tests/support/temp_folder.h"
#include "typescout/typescout.h"

namespace typescout::tests {
namespace {

namespace fs = std::filesystem;

constexpr int THROWS = -1;  // in place of an answer: the int 0 was thrown

struct TestFile {
  std::string name;
  std::wstring path;
  std::string bytes;
  int answer = 0;               // of a whole scan, when all goes well
  std::set<int> possible = {};  // the answers when some rows cannot be asked

  bool IsDocument() const { return bytes.starts_with("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"); }
};

int Scan(const TestFile& file) {
  try {
    return TypeScoutFile(file.path.c_str());
  } catch (int) {
    return THROWS;
  }
}

class SystemFaults : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    folder = new TempFolder;
    const fs::path modules = folder->path() / "filters";
    fs::create_directories(modules);
    fs::copy_file(TEST_MODULE_FILE, modules / "TvnPDFImport.so");
    for (const fs::path& path : {modules, modules / "TvnPDFImport.so"}) {
      fs::permissions(path, fs::perms::owner_all);
    }
    setenv("TVN_FILTERS_DIR", modules.c_str(), 1);
    // Of each filter, the first plain file and the first document that its row accepts.
    std::set<std::pair<FilterId, bool>> filters;
    for (const Sample& sample : AllSamples()) {
      if (sample.verdict == NO || !filters.insert({sample.filter, sample.streams.empty()}).second)
        continue;
      Add(sample.name, sample.path, FileBytes(sample));
    }
    Add("nothing", L"sample", "");
    Add("no format", L"sample", Fill(200'000, '\1'));
    Add("a GIF whose picture runs past the head", L"sample",
        PadTo(13, "GIF89a") + PadTo(10, ",") + "\x08" + Fill(2'000 * 256, '\xFF') + "\0;"s);
    Add("a TIFF whose directory lies beyond the head", L"sample",
        PadTo(60'000, "II*\0\0\xEA\0\0"s) + "\1\0\xFE\0\4\0\1\0\0\0\0\0\0\0\0\0\0\0"s);
    Add("document with a long stream", L"sample",
        WriteCompound({{L"WordDocument", PadTo(300'000, "\xEC\xA5\xC1")}}));
    Add("document with a drawing object", L"sample",
        WriteCompound(
            {},
            {.classId = {
                 0xDE14F420, 0xAC1C, 0x11CE, {0xBE, 0x26, 0xDB, 0x67, 0x23, 0x5E, 0x26, 0x89}}}));
  }
  static void TearDownTestSuite() {
    files.clear();
    delete folder;
  }

  static void Add(const std::string& name, const std::wstring& path, const std::string& bytes) {
    const fs::path written = folder->Write(fs::path(std::to_string(files.size())) / path, bytes);
    TestFile file = {.name = name,
                     .path = std::wstring(posix_host::WidePath(written.string()).View()),
                     .bytes = bytes};
    file.answer = Scan(file);
    file.possible = {0, file.answer};
    for (int row = 0; row < GetNumTypeScoutProcs(); ++row) {
      const int answer = CheckFiltersFromList(file.path.data(), &row, 1, 0, nullptr, 0);
      file.possible.insert(answer);
    }
    // A document that does not open may be a Publisher file by its name, and a PDF file is accepted
    // when the module cannot be asked. A GIF that comes back short throws.
    if (file.IsDocument() && path.ends_with(L".pub")) file.possible.insert(0x0545);
    if (bytes.starts_with("%PDF-")) file.possible.insert({0x0535, 0x0503});
    if (bytes.starts_with("GIF8") && bytes.size() > HEAD_CAPACITY) file.possible.insert(THROWS);
    files.push_back(file);
  }

  // Has the fault happen at the first, second, ... call of its kind, until there is no such call.
  // `isHarmless`: the answer must not change.
  static void MeetEverywhere(Fault fault, bool isHarmless) {
    constexpr int ENOUGH = 10'000;
    for (const TestFile& file : files) {
      bool hasFailed = true;
      for (fault.nth = 1; hasFailed; ++fault.nth) {
        SCOPED_TRACE(file.name + ", call " + std::to_string(fault.nth) +
                     (fault.onwards ? " and later" : ""));
        ASSERT_LT(fault.nth, ENOUGH);
        const WatchedCalls calls(fault);
        const int answer = Scan(file);
        hasThrown = hasThrown || answer == THROWS;
        hasFailed = calls.HasFailed();
        ASSERT_EQ(calls.openFiles, 0);
        ASSERT_EQ(calls.carelessOpens, 0);
        ASSERT_EQ(calls.KeptBlocks(), 0);
        if (isHarmless || !hasFailed) {
          ASSERT_EQ(answer, file.answer);
        } else {
          ASSERT_TRUE(file.possible.contains(answer)) << std::hex << answer;
        }
      }
    }
  }

  static inline TempFolder* folder = nullptr;
  static inline std::vector<TestFile> files;
  static inline bool hasThrown = false;  // in any of these scans
};

TEST_F(SystemFaults, LeaveNothingOpenAndNoWrongAnswer) {
  using enum SystemCall;
  constexpr int COMES_IN_HALVES = 0;
  const std::pair<SystemCall, std::vector<int>> FAULTS[] = {
      {OPEN, {EIO, EACCES, EMFILE, ENOENT, EAGAIN, EINTR}},
      {STAT, {EIO}},
      {FSTAT, {EIO}},
      {READ, {EIO, EINTR, COMES_IN_HALVES}},
      {CLOSE, {EIO}},
      {ALLOCATE, {ENOMEM}}};
  for (const auto& [call, errors] : FAULTS) {
    for (const int error : errors) {
      const bool isHarmless =
          call == CLOSE || error == EAGAIN || error == EINTR || error == COMES_IN_HALVES;
      MeetEverywhere({.call = call, .error = error}, isHarmless);
      if (error == EINTR) continue;  // who is interrupted tries again
      MeetEverywhere({.call = call, .onwards = true, .error = error}, isHarmless);
    }
  }
  EXPECT_TRUE(hasThrown) << "a GIF that cannot be read on";
}

TEST_F(SystemFaults, LetNoPipeBeRead) {
  for (const TestFile& file : files) {
    const WatchedCalls calls({.call = SystemCall::FSTAT, .nth = 1, .onwards = true});
    EXPECT_EQ(Scan(file), 0) << file.name;
    EXPECT_EQ(calls.Count(SystemCall::READ), 0) << file.name;
    EXPECT_EQ(calls.openFiles, 0) << file.name;
  }
}

// Opening a pipe would wake the program that waits for a reader.
TEST_F(SystemFaults, OpenNothingButRegularFiles) {
  const auto at = [](const char* name) { return (folder->path() / name).string(); };
  ASSERT_EQ(mkfifo(at("pipe").c_str(), 0600), 0);
  const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  at("socket").copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  close(listener);
  fs::create_symlink("/dev/zero", at("device"));
  fs::create_symlink("loop", at("loop"));
  for (const char* name : {"pipe", "socket", "device", "loop", "", "missing"}) {
    const auto path = posix_host::WidePath(at(name));
    unsigned char png[] = "\x89PNG\r\n\x1A\n";
    int id = 0x0322;
    const WatchedCalls calls;
    EXPECT_EQ(TypeScoutFile(path), 0) << name;
    EXPECT_EQ(CheckFiltersFromIDList(path, &id, 1, 8, png, 0), 0x0322) << "the caller's bytes";
    EXPECT_EQ(calls.Count(SystemCall::OPEN), 0) << name;
  }
}

// Without memory for the file object or for the head there is nothing to look at.
TEST_F(SystemFaults, OfTheFirstAllocationsAreNoAnswer) {
  for (const TestFile& file : files) {
    for (const int nth : {1, 2}) {
      const WatchedCalls calls({.call = SystemCall::ALLOCATE, .nth = nth});
      EXPECT_EQ(Scan(file), 0) << file.name;
    }
  }
}

TEST_F(SystemFaults, DoNotComeOfForkWhileModulesAreLoaded) {
  if (IS_SANITIZED) GTEST_SKIP() << "the sanitizer's malloc() may be left locked";
  const auto pdf = std::ranges::find_if(
      files, [](const TestFile& file) { return file.bytes.starts_with("%PDF-"); });
  ASSERT_NE(pdf, files.end());
  std::atomic<bool> isOver = false;
  std::jthread other([&] {
    while (!isOver) Scan(*pdf);
  });
  int status = 0;
  for (int i = 0; i < 60 && status == 0; ++i) {
    const pid_t child = fork();
    if (child == 0) {
      alarm(20);
      int alike = 0;
      for (int times = 0; times < 5; ++times) alike += Scan(*pdf) == pdf->answer ? 1 : 0;
      _exit(alike == 5 ? 0 : 1);
    }
    waitpid(child, &status, 0);
  }
  isOver = true;
  EXPECT_EQ(status, 0);
}

// What a scan costs: opens, stats, reads, bytes read, KiB of memory.
using Costs = std::array<std::size_t, 5>;

Costs CostsOf(const WatchedCalls& calls) {
  const auto count = [&](SystemCall call) { return static_cast<std::size_t>(calls.Count(call)); };
  return {count(SystemCall::OPEN), count(SystemCall::STAT) + count(SystemCall::FSTAT),
          count(SystemCall::READ), calls.bytesRead, (calls.AllocatedBytes() + 1023) / 1024};
}

// GUARANTEES=write writes the table.
TEST_F(SystemFaults, CostWhatIsPromisedWhenThereAreNone) {
  std::ifstream stream(GUARANTEES_FILE);
  std::string document{std::istreambuf_iterator<char>(stream), {}};
  const auto find = [&](const std::string& kind) { return document.find("| " + kind + " |"); };
  std::map<std::string, Costs> most;
  for (const TestFile& file : files) {
    if (file.bytes.starts_with("%PDF-")) continue;  // what the module's loader takes is not ours
    const WatchedCalls calls;
    Scan(file);
    const Costs costs = CostsOf(calls);
    const bool isOwnKind = find(file.name) != std::string::npos;
    Costs& mostOfKind = most[file.IsDocument() ? "compound documents"
                             : isOwnKind       ? file.name
                                               : "all others"];
    for (std::size_t i = 0; i < costs.size(); ++i) {
      mostOfKind[i] = std::max(mostOfKind[i], costs[i]);
    }
    if (file.IsDocument() || isOwnKind) continue;
    EXPECT_EQ(calls.Count(SystemCall::LOADER), 0) << file.name << ": there is no module";
    // What lies in /proc calls itself empty, so an empty file is read too.
    EXPECT_LE(calls.AllocatedBytes(),
              std::clamp<std::size_t>(file.bytes.size(), 4'096, HEAD_CAPACITY) + 1'024)
        << file.name;
  }
  EXPECT_EQ(most.size(), 4u);
  for (const auto& [kind, costs] : most) {
    const std::size_t start = find(kind);
    ASSERT_NE(start, std::string::npos) << kind;
    const std::size_t end = document.find('\n', start);
    std::istringstream row(document.substr(start + kind.size() + 4, end - start));
    std::string measured = "| " + kind + " |";
    for (const std::size_t cost : costs) {
      std::size_t promised = 0;
      row >> promised, row.ignore(2);
      EXPECT_LE(cost, promised) << "docs/guarantees.md says less of " << kind;
      measured += ' ' + std::to_string(cost) + " |";
    }
    document.replace(start, end - start, measured);
  }
  if (const char* mode = std::getenv("GUARANTEES"); mode != nullptr && mode == "write"s) {
    std::ofstream(GUARANTEES_FILE) << document;
  }
}

}  // namespace
}  // namespace typescout::tests
