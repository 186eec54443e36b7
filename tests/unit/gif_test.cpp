// GIF files whose pictures run past the head: how the rest of the file is read.
#include <algorithm>
#include <span>
#include <string>

#include "core/file_context.h"
#include "detectors/raster/raster.h"
#include "host/memory/failing_allocation.h"
#include "tests/samples/sample.h"
#include "tests/support/on_the_machine.h"

namespace typescout::tests {
namespace {

using memory_host::Call;
using memory_host::TheMachine;

constexpr std::size_t HEAD = HEAD_CAPACITY;
// The first size byte beyond the head stands at 24 + 196 * 256, where 64 KiB are read.
constexpr std::size_t WINDOW_END = 24 + 196 * 256 + 64 * 1024;
const wchar_t* const PATH = L"gif";

// A picture whose one chain of data makes the whole `size` bytes long, up to the terminator.
std::string GifOfSize(std::size_t size) {
  std::string bytes = PadTo(13, "GIF89a") + PadTo(10, ",") + "\x08";
  while (bytes.size() + 257 < size) bytes += "\xFF" + Fill(255, 'x');
  const std::size_t last = size - bytes.size() - 2;
  return bytes + static_cast<char>(last) + Fill(last, 'x') + Fill(1);
}

const std::string SECOND_PICTURE = PadTo(10, ",") + "\x08" + "\1x\0"s;

class Gif : public OnTheMachine {
 protected:
  // Asks about the caller's bytes: the file does not open when the call begins, and does later.
  static FilterId AskBeforeItOpens(const wchar_t* path, FilterId filterId,
                                   const std::string& bytes) {
    TheMachine().faults = {
        {.call = Call::OPEN_FILE, .nth = TheMachine().calls[Call::OPEN_FILE] + 1}};
    return AskWithBytes(path, filterId, bytes);
  }
};

TEST_F(Gif, IsReadOnFromTheFirstNeededByte) {
  // The chain's last size byte, its terminator and the next introducer on both sides of the end.
  for (const std::size_t size : {HEAD - 1, HEAD, HEAD + 1, HEAD + 2, HEAD + 254, HEAD + 255,
                                 HEAD + 256, HEAD + 257, HEAD + 258, WINDOW_END - 1, WINDOW_END,
                                 WINDOW_END + 1, WINDOW_END + 256, WINDOW_END + 257, 4 * HEAD}) {
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
  EXPECT_EQ(TheMachine().calls[Call::SEEK_FILE], 2) << "a window of 64 KiB and the rest";
  EXPECT_EQ(TheMachine().calls[Call::READ_FILE], 4);
}

TEST_F(Gif, GoesOnInTheFileBehindTheCallersBytes) {
  const std::string bytes = GifOfSize(500) + SECOND_PICTURE;
  EXPECT_EQ(AskBeforeItOpens(L"missing", 0x0616, bytes.substr(0, 8)), 0);
  TheMachine().files[PATH] = bytes;
  EXPECT_EQ(AskBeforeItOpens(PATH, 0x0616, bytes.substr(0, 8)), 0x0616)
      << "the screen's flags are in the file already";
  EXPECT_EQ(AskBeforeItOpens(PATH, 0x0616, bytes.substr(0, 7)), 0) << "too few to tell";
}

// What the file holds below the first byte that the walk needs does not matter.
TEST_F(Gif, IsTheCallersBytesUpToTheFirstNeededByte) {
  const std::string bytes = GifOfSize(500);
  const std::size_t needed = 280;  // where the last size byte stands
  ASSERT_EQ(bytes[needed], static_cast<char>(500 - needed - 2));
  const std::string head = bytes.substr(0, 40);
  TheMachine().files[PATH] = Fill(needed, ',') + bytes.substr(needed) + SECOND_PICTURE;
  EXPECT_EQ(AskBeforeItOpens(PATH, 0x0616, head), 0x0616);
  EXPECT_EQ(TheMachine().calls[Call::SEEK_FILE], 1);
  // Without a path, or with a file that ends before it, zeros end the walk.
  EXPECT_EQ(AskBeforeItOpens(nullptr, 0x0305, head), 0x0305);
  TheMachine().files[PATH].resize(needed);
  EXPECT_EQ(AskBeforeItOpens(PATH, 0x0305, head), 0x0305);
  EXPECT_EQ(TheMachine().calls[Call::SEEK_FILE], 1) << "nothing to read";
}

TEST_F(Gif, MayBeLongerThan4GiB) {
  constexpr std::uint64_t LONG = std::uint64_t{4} << 30;
  const std::string start = PadTo(13, "GIF89a") + PadTo(10, ",") + "\x08";
  const std::string end = Fill(1) + SECOND_PICTURE;
  const std::uint64_t endAt = start.size() + (LONG / 256 + 1) * 256;  // size bytes and data between
  TheMachine().files[PATH] = start;
  TheMachine().lengths[PATH] = endAt + end.size();
  TheMachine().fillBeyondContent = [&](std::uint64_t position, std::span<char> bytes) {
    std::fill(bytes.begin(), bytes.end(), '\xFF');
    const std::uint64_t behind = position + bytes.size();
    for (std::uint64_t at = std::max(position, endAt); at < behind; ++at) {
      bytes[at - position] = end[at - endAt];
    }
  };
  EXPECT_EQ(CheckOneFilter(PATH, 0x0616, 0), 1);
}

TEST_F(Gif, ThatCannotBeReadOnIsWhatTheHeadSays) {
  TheMachine().files[PATH] = GifOfSize(2 * HEAD) + SECOND_PICTURE;
  TheMachine().faults = {{.call = Call::OPEN_FILE, .nth = 2}};
  EXPECT_EQ(CheckOneFilter(PATH, 0x0305, 0), 1);
  // Nor without the memory to do so: the third allocation is the file object again, the fourth the
  // buffer.
  TheMachine().faults.clear();
  int answers = 0;
  for (int nth = 1; nth < 10; ++nth) {
    const memory_host::FailingAllocation failing(nth);
    answers += CheckOneFilter(PATH, 0x0305, 0);
  }
  EXPECT_EQ(answers, 2) << "without the second file object, and without the buffer";
}

// By a short read, or by an end between the question for the length and the read. Where the seek
// ended does not matter.
TEST_F(Gif, ThatShrinksMeanwhileThrows) {
  const std::string bytes = GifOfSize(4 * HEAD) + ";";
  const struct {
    std::vector<memory_host::Fault> faults;
    std::size_t length;
    bool throws;
  } CASES[] = {{{{.call = Call::READ_FILE, .nth = 2}}, bytes.size(), true},
               {{{.call = Call::READ_FILE, .nth = 4}}, bytes.size(), true},
               {{{.call = Call::SEEK_FILE}}, bytes.size(), false},
               {{}, bytes.size() + 1, true}};
  for (const auto& c : CASES) {
    for (const FilterId filterId : {0x0305, 0x0616}) {
      const auto layOut = [&] {
        memory_host::Reset();
        TheMachine().files[PATH] = bytes;
        TheMachine().lengths[PATH] = c.length;
        TheMachine().faults = c.faults;
      };
      const auto throws = [](const auto& ask) {
        try {
          ask();
        } catch (int value) {
          EXPECT_EQ(value, 0);
          return true;
        }
        return false;
      };
      layOut();
      int id = filterId;
      EXPECT_EQ(throws([&] { CheckFiltersFromIDList(PATH, &id, 1, 0, nullptr, 0); }), c.throws);
      EXPECT_NE(id, filterId) << "the list was rewritten before";
      EXPECT_EQ(TheMachine().OpenObjects(), 0);
      layOut();
      EXPECT_EQ(throws([] { TypeScoutFile(PATH); }), c.throws);
      EXPECT_EQ(TheMachine().OpenObjects(), 0);
    }
  }
}

}  // namespace
}  // namespace typescout::tests
