// GIF files whose pictures run past the head: how the rest of the file is read.
#include <gtest/gtest.h>

#include <string>

#include "core/file_context.h"
#include "detectors/raster/raster.h"
#include "host/memory/failing_allocation.h"
#include "host/memory/memory_host.h"
#include "tests/samples/sample.h"
#include "tests/support/ask.h"
#include "typescout/typescout.h"

namespace typescout::tests {
namespace {

using memory_host::Call;
using memory_host::TheMachine;

constexpr std::size_t HEAD = HEAD_CAPACITY;
const wchar_t* const PATH = L"gif";

// A picture whose one chain of data makes the whole `size` bytes long, up to the terminator.
std::string GifOfSize(std::size_t size) {
  std::string bytes = PadTo(13, "GIF89a") + PadTo(10, ",") + "\x08";
  while (bytes.size() + 257 < size) bytes += "\xFF" + Fill(255, 'x');
  const std::size_t last = size - bytes.size() - 2;
  return bytes + static_cast<char>(last) + Fill(last, 'x') + Fill(1);
}

const std::string SECOND_PICTURE = PadTo(10, ",") + "\x08" + Bytes("\1x\0");

class Gif : public testing::Test {
 protected:
  Gif() { memory_host::Reset(); }
  ~Gif() override { EXPECT_EQ(TheMachine().OpenObjects(), 0); }
};

TEST_F(Gif, IsReadOnFromTheFirstNeededByte) {
  // The chain's last size byte, its terminator and the next introducer on both sides of the end.
  for (const std::size_t size : {HEAD - 1, HEAD, HEAD + 1, HEAD + 2, HEAD + 254, HEAD + 255,
                                 HEAD + 256, HEAD + 257, HEAD + 258, 4 * HEAD}) {
    for (const bool isAnimated : {false, true}) {
      TheMachine().files[PATH] = GifOfSize(size) + (isAnimated ? SECOND_PICTURE : ";");
      EXPECT_EQ(CheckOneFilter(PATH, 0x0305, 0), isAnimated ? 0 : 1) << size;
      EXPECT_EQ(CheckOneFilter(PATH, 0x0616, 0), isAnimated ? 1 : 0) << size;
    }
  }
}

TEST_F(Gif, IsReadOnceAndOnlyWhenNeeded) {
  TheMachine().files[PATH] = GifOfSize(HEAD - 1) + ";";
  EXPECT_EQ(CheckOneFilter(PATH, 0x0305, 0), 1);
  EXPECT_EQ(TheMachine().calls[Call::OPEN_FILE], 1) << "the head is enough";
  TheMachine().files[PATH] = GifOfSize(3 * HEAD) + SECOND_PICTURE;
  EXPECT_EQ(CheckOneFilter(PATH, 0x0616, 0), 1);
  EXPECT_EQ(TheMachine().calls[Call::OPEN_FILE], 3);
  EXPECT_EQ(TheMachine().calls[Call::SEEK_FILE], 1);
  EXPECT_EQ(TheMachine().calls[Call::READ_FILE], 3);
}

TEST_F(Gif, GoesOnInTheFileBehindTheCallersBytes) {
  const std::string bytes = GifOfSize(500) + SECOND_PICTURE;
  std::string head = bytes.substr(0, 8);  // the screen's flags are in the file already
  int animated = 53;
  const auto check = [&](const wchar_t* path) {
    std::wstring copy = path;
    TheMachine().faults = {
        {.call = Call::OPEN_FILE, .nth = TheMachine().calls[Call::OPEN_FILE] + 1}};
    return CheckFiltersFromList(copy.data(), &animated, 1, static_cast<int>(head.size()),
                                reinterpret_cast<unsigned char*>(head.data()), 0);
  };
  EXPECT_EQ(check(L"missing"), 0);
  TheMachine().files[PATH] = bytes;
  EXPECT_EQ(check(PATH), 0x0616) << "the file opens by then";
  head.pop_back();
  EXPECT_EQ(check(PATH), 0) << "too few to tell";
}

// What the file holds below the first byte that the walk needs does not matter.
TEST_F(Gif, IsTheCallersBytesUpToTheFirstNeededByte) {
  const std::string bytes = GifOfSize(500);
  const std::size_t needed = 280;  // where the last size byte stands
  ASSERT_EQ(bytes[needed], static_cast<char>(500 - needed - 2));
  std::string head = bytes.substr(0, 40);
  int still = 4;
  int animated = 53;
  const auto check = [&](wchar_t* path, int* index) {
    TheMachine().faults = {
        {.call = Call::OPEN_FILE, .nth = TheMachine().calls[Call::OPEN_FILE] + 1}};
    return CheckFiltersFromList(path, index, 1, static_cast<int>(head.size()),
                                reinterpret_cast<unsigned char*>(head.data()), 0);
  };
  std::wstring path = PATH;
  TheMachine().files[PATH] = Fill(needed, ',') + bytes.substr(needed) + SECOND_PICTURE;
  EXPECT_EQ(check(path.data(), &animated), 0x0616);
  EXPECT_EQ(TheMachine().calls[Call::SEEK_FILE], 1);
  // Without a path, or with a file that ends before it, zeros end the walk.
  EXPECT_EQ(check(nullptr, &still), 0x0305);
  EXPECT_EQ(check(nullptr, &animated), 0);
  TheMachine().files[PATH].resize(needed);
  EXPECT_EQ(check(path.data(), &still), 0x0305);
  EXPECT_EQ(TheMachine().calls[Call::SEEK_FILE], 1) << "nothing to read";
}

TEST_F(Gif, IsNotReadOnBeyond4GiB) {
  constexpr std::uint64_t LONGEST = 0xFFFF'FFFF;
  const std::string head = PadTo(13, "GIF89a") + ",";  // its flags, 9 bytes on, come first
  constexpr std::uint64_t NEEDED = 13 + 9;
  TheMachine().files[PATH] = head;
  ProbeContext probe = {};
  probe.head = reinterpret_cast<const unsigned char*>(head.data());
  probe.headLength = static_cast<std::int32_t>(head.size());
  probe.path = PATH;
  for (const std::uint64_t rest : {LONGEST, LONGEST + 1, 2 * LONGEST}) {
    TheMachine().lengths[PATH] = NEEDED + rest;
    // The second allocation, after the file object, is the one for the rest.
    const memory_host::FailingAllocation failing(2);
    EXPECT_EQ(DetectGif(&probe), 1) << rest;
    EXPECT_EQ(failing.HasFailed(), rest == LONGEST) << rest;
  }
  EXPECT_EQ(TheMachine().calls[Call::READ_FILE], 0);
}

TEST_F(Gif, ThatCannotBeReadOnIsWhatTheHeadSays) {
  TheMachine().files[PATH] = GifOfSize(2 * HEAD) + SECOND_PICTURE;
  TheMachine().faults = {{.call = Call::OPEN_FILE, .nth = 2}};
  EXPECT_EQ(CheckOneFilter(PATH, 0x0305, 0), 1);
  // Nor with the memory for the rest: the fifth allocation, after file, path, head and file again.
  memory_host::Reset();
  TheMachine().files[PATH] = GifOfSize(2 * HEAD) + SECOND_PICTURE;
  int answers = 0;
  for (int nth = 1; nth < 10; ++nth) {
    const memory_host::FailingAllocation failing(nth);
    answers += CheckOneFilter(PATH, 0x0305, 0);
  }
  EXPECT_EQ(answers, 2) << "without the second file object, and without the buffer";
}

TEST_F(Gif, ThatShrinksMeanwhileThrows) {
  const std::string bytes = GifOfSize(2 * HEAD) + ";";
  for (const Call call : {Call::READ_FILE, Call::SEEK_FILE}) {
    memory_host::Reset();
    TheMachine().files[PATH] = bytes;
    TheMachine().faults = {{.call = call, .nth = call == Call::READ_FILE ? 2 : 1}};
    int ids[] = {0x0305};
    try {
      CheckFiltersFromIDList(PATH, ids, 1, 0, nullptr, 0);
      ADD_FAILURE() << "nothing was thrown";
    } catch (int value) {
      EXPECT_EQ(value, 0);
    }
    EXPECT_EQ(ids[0], 4) << "the list was rewritten before";
    EXPECT_EQ(TheMachine().OpenObjects(), 0);
  }
  // A file that ends between the question for its length and the read.
  memory_host::Reset();
  TheMachine().files[PATH] = bytes;
  TheMachine().lengths[PATH] = bytes.size() + 1;
  EXPECT_THROW(CheckOneFilter(PATH, 0x0305, 0), int);
  EXPECT_EQ(TheMachine().OpenObjects(), 0);

  TheMachine().lengths.clear();
  TheMachine().documents[PATH] = {};
  TheMachine().faults = {{.call = Call::READ_FILE, .nth = TheMachine().calls[Call::READ_FILE] + 2}};
  EXPECT_THROW(TypeScoutFile(PATH), int);
  EXPECT_THROW(
      {
        TheMachine().faults[0].nth = TheMachine().calls[Call::READ_FILE] + 2;
        CheckOneFilter(PATH, 0x0616, 0);
      },
      int);
}

}  // namespace
}  // namespace typescout::tests
