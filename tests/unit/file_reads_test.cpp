// What a call reads and opens: each thing once, and nothing that is known from the head. And what
// it reads beyond the head: the rest of a GIF, the directory of the paint program's TIFF.
#include <algorithm>
#include <span>
#include <string>
#include <tuple>
#include <vector>

#include "core/file_context.h"
#include "detectors/native/native.h"
#include "detectors/raster/raster.h"
#include "host/memory/failing_allocation.h"
#include "tests/support/ask.h"

namespace typescout::tests {
namespace {

using memory_host::Call;
using memory_host::TheMachine;

constexpr std::size_t HEAD = HEAD_CAPACITY;
const wchar_t* const PATH = L"file";
const std::string SIGNATURE = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1";
const std::string EARLY_SIGNATURE = "\x0E\x11\xFC\x0D\xD0\xCF\x11\x0E";

// A TIFF file whose directory there opens with the paint program's tag, and the name that it has.
std::string PaintTiff(std::size_t directory, std::size_t nameAt) {
  const auto number = [](std::size_t value) {
    return std::string{static_cast<char>(value & 0xFF), static_cast<char>(value >> 8)} + Fill(2);
  };
  const std::string tag = "\x01\0\x31\x01\x02\0\x12\0\0\0"s + number(nameAt);
  return Patch(Patch("II*\0"s + number(directory), directory, tag), nameAt, "Tavon PIXEL-FORGE\0"s);
}

class ProbedFiles : public OnTheMachine {
 protected:
  static int Calls(Call call) { return TheMachine().calls[call]; }
};

TEST_F(ProbedFiles, AreOpenedAndReadOnce) {
  for (const Sample& sample : AllSamples()) {
    if (sample.bytes.starts_with("GIF8") && sample.bytes.size() > HEAD) continue;
    const bool isDocument = sample.bytes.starts_with(SIGNATURE);
    LayOut(sample);
    const memory_host::FailingAllocation none(0);
    TypeScoutFile(sample.path.c_str());
    const int allocations = none.Count();
    EXPECT_EQ(Calls(Call::OPEN_FILE), 1) << sample.name;
    EXPECT_EQ(Calls(Call::READ_FILE), 1) << sample.name;
    EXPECT_EQ(Calls(Call::SEEK_FILE), 0) << sample.name;
    EXPECT_EQ(Calls(Call::IS_STORAGE_FILE), 0) << sample.name;
    EXPECT_EQ(Calls(Call::OPEN_STORAGE), isDocument ? 1 : 0) << sample.name;
    if (isDocument || sample.bytes.starts_with("%PDF")) continue;  // opens more, asks a module
    EXPECT_LE(allocations, 2) << sample.name;
  }
}

TEST_F(ProbedFiles, AreReadAgainBehindTheHeadOnly) {
  const auto opens = [](const std::string& bytes, int filterId) {
    memory_host::Reset();
    TheMachine().files[PATH] = bytes;
    CheckOneFilter(PATH, filterId, 0);
    return Calls(Call::OPEN_FILE);
  };
  for (const std::size_t size : {std::size_t{0}, HEAD - 1, HEAD, HEAD + 1, 2 * HEAD}) {
    EXPECT_EQ(opens(Fill(size, '.'), 0x0901), 1) << size;
  }
  // A TIFF file's first directory; the first is not even there.
  const auto tiff = [](std::size_t directory, std::size_t size) {
    return PadTo(size, PaintTiff(directory, 8));
  };
  EXPECT_EQ(opens(tiff(HEAD + 20, HEAD + 10), 0x0710), 1);
  EXPECT_EQ(opens(tiff(HEAD - 14, HEAD + 10), 0x0710), 1);
  EXPECT_EQ(opens(tiff(HEAD - 13, HEAD + 10), 0x0710), 2);
  EXPECT_EQ(opens(tiff(HEAD - 13, HEAD), 0x0710), 1) << "the head is the file";
}

// The paint program's tag around the end of the head: the answer is the same from the head as from
// the file alone.
TEST_F(ProbedFiles, AnswerAsTheFileAloneWould) {
  int yes = 0;
  for (std::size_t directory = HEAD - 40; directory < HEAD + 4; ++directory) {
    for (const std::size_t nameAt : {std::size_t{8}, HEAD - 18, HEAD - 17, HEAD + 40}) {
      const std::string tiff = Patch(PaintTiff(directory, nameAt), HEAD + 19, Fill(1));
      for (const std::size_t size : {HEAD, directory + 14, nameAt + 16, nameAt + 17, tiff.size()}) {
        const File file(tiff.substr(0, size));
        LayOut(file);
        const int alone = AskAboutHead(DetectPaintImage, file, file.bytes.size());
        EXPECT_EQ(CheckOneFilter(file.path.c_str(), 0x0710, 0), alone)
            << directory << ", " << nameAt << ", " << size;
        yes += alone;
      }
    }
  }
  EXPECT_GT(yes, 100);
}

// Systems say 0 of files that they make up on reading.
TEST_F(ProbedFiles, AreTextAlsoWithoutALength) {
  TheMachine().files[PATH] = "text";
  TheMachine().lengths[PATH] = 0;
  EXPECT_EQ(TypeScoutFile(PATH), 0x0903);
  TheMachine().files[PATH] = SIGNATURE;
  TheMachine().documents[PATH].streams = {{L"WordDocument", PadTo(1'536, "\xEC\xA5\xC1\0"s)}};
  EXPECT_EQ(TypeScoutFile(PATH), 0x0814);
}

TEST_F(ProbedFiles, AreDocumentsWhenHeadAndHostSaySo) {
  const std::string part = SIGNATURE.substr(0, 7);
  for (const std::string& head : {SIGNATURE, EARLY_SIGNATURE, part + "\xE0",
                                  EARLY_SIGNATURE.substr(0, 7) + "\x0F", part, ""s}) {
    const bool isAsked = head == SIGNATURE || head == EARLY_SIGNATURE;
    memory_host::Reset();
    TheMachine().files[PATH] = head;
    TheMachine().documents[PATH].streams = {{L"WordDocument", PadTo(1'536, "\xEC\xA5\xC1")}};
    EXPECT_EQ(CheckOneFilter(PATH, 0x0814, 0), isAsked) << head;
    EXPECT_EQ(Calls(Call::OPEN_STORAGE), isAsked) << head;
  }
  TheMachine().documents.clear();
  TheMachine().files[PATH] = SIGNATURE;
  EXPECT_EQ(CheckOneFilter(PATH, 0x0814, 0), 0) << "the host does not open it";
}

// Nothing is known about a file that could not be read: every row looks for itself.
TEST_F(ProbedFiles, AreLookedAtAfreshBehindTheCallersBytes) {
  const auto textRows = [] {
    std::vector<int> rows = {92, 93, 94, 95, 96};
    unsigned char bytes[] = "\1";
    TheMachine().faults = {
        {.call = Call::OPEN_FILE, .nth = TheMachine().calls[Call::OPEN_FILE] + 1}};
    return CheckFiltersFromList(const_cast<wchar_t*>(PATH), rows.data(), 5, 1, bytes, 0);
  };
  TheMachine().files[PATH] = "\1";
  EXPECT_EQ(textRows(), 0);
  EXPECT_EQ(Calls(Call::OPEN_FILE), 6);
  EXPECT_EQ(Calls(Call::IS_STORAGE_FILE), 1);
  TheMachine().files[PATH] = "text";
  EXPECT_EQ(textRows(), 0x0903);
}

// The first size byte beyond the head stands at 24 + 196 * 256, where 64 KiB are read.
constexpr std::size_t WINDOW_END = 24 + 196 * 256 + 64 * 1024;

// A picture whose one chain of data makes the whole `size` bytes long, up to the terminator.
std::string GifOfSize(std::size_t size) {
  std::string bytes = PadTo(13, "GIF89a") + PadTo(10, ",") + "\x08";
  while (bytes.size() + 257 < size) bytes += "\xFF" + Fill(255, 'x');
  const std::size_t last = size - bytes.size() - 2;
  return bytes + static_cast<char>(last) + Fill(last, 'x') + Fill(1);
}

const std::string SECOND_PICTURE = PadTo(10, ",") + "\x08" + "\1x\0"s;

class Gif : public ProbedFiles {};

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

// Only from the first byte on that the walk needs: there the last size byte stands.
TEST_F(Gif, GoesOnInTheFileBehindTheCallersBytes) {
  constexpr std::size_t NEEDED = 280;
  const std::string bytes = GifOfSize(500) + SECOND_PICTURE;
  const std::string before = Fill(NEEDED, ',');
  const struct {
    const wchar_t* path;
    std::string content;
    std::size_t head;  // how many of the bytes are given
    bool isAnimated;
    int seeks;
  } CASES[] = {
      {L"missing", bytes, 8, false, 0},
      {PATH, bytes, 8, true, 1},   // the screen's flags are in the file already
      {PATH, bytes, 7, false, 0},  // too few to tell
      {PATH, before + bytes.substr(NEEDED), 40, true, 1},
      {PATH, before, 40, false, 0},  // zeros end the walk
      {nullptr, bytes, 40, false, 0},
  };
  for (const auto& c : CASES) {
    memory_host::Reset();
    TheMachine().files[PATH] = c.content;
    // The file does not open when the call begins, and does later.
    TheMachine().faults = {{.call = Call::OPEN_FILE}};
    const std::string head = bytes.substr(0, c.head);
    EXPECT_EQ(AskWithBytes(c.path, 0x0616, head) != 0, c.isAnimated) << c.head;
    EXPECT_EQ(Calls(Call::SEEK_FILE), c.seeks) << c.head;
  }
  EXPECT_EQ(AskWithBytes(nullptr, 0x0305, bytes.substr(0, 40)), 0x0305);
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
    for (char& byte : bytes) {
      const std::uint64_t at = position++;
      if (at >= endAt) byte = end[static_cast<std::size_t>(at - endAt)];
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
  const std::tuple<std::vector<memory_host::Fault>, std::size_t, bool> CASES[] = {
      {{{.call = Call::READ_FILE, .nth = 2}}, bytes.size(), true},
      {{{.call = Call::READ_FILE, .nth = 4}}, bytes.size(), true},
      {{{.call = Call::SEEK_FILE}}, bytes.size(), false},
      {{}, bytes.size() + 1, true}};
  for (const auto& [faults, length, throws] : CASES) {
    for (const FilterId filterId : {0x0305, 0x0616, 0}) {  // 0: a whole scan
      memory_host::Reset();
      TheMachine().files[PATH] = bytes;
      TheMachine().lengths[PATH] = length;
      TheMachine().faults = faults;
      int id = filterId;
      try {
        filterId == 0 ? TypeScoutFile(PATH) : CheckFiltersFromIDList(PATH, &id, 1, 0, nullptr, 0);
        EXPECT_FALSE(throws);
      } catch (int value) {
        EXPECT_TRUE(throws && value == 0);
      }
      EXPECT_TRUE(filterId == 0 || id != filterId) << "the list was rewritten before";
      EXPECT_EQ(TheMachine().OpenObjects(), 0);
    }
  }
}

// Whatever the head says, the paint program's tag is read from the file.
TEST_F(ProbedFiles, AreAskedForThePaintTag) {
  using Faults = std::vector<memory_host::Fault>;
  const std::string tiff = PaintTiff(8, 22);
  const std::tuple<const char*, std::string, std::string, Verdict, Faults> CASES[] = {
      {"directory further on", PaintTiff(200, 214).substr(0, 8), PaintTiff(90, 104), NO, {}},
      {"no tag in the head", tiff.substr(0, 8), tiff, YES, {}},
      {"only in the head", tiff, tiff.substr(0, 8), NO, {}},
      {"empty by now", tiff, "", NO, {}},
      {"no opening", tiff, tiff, NO, {{.call = Call::OPEN_FILE}}},
      {"no first seek", tiff, tiff, NO, {{.call = Call::SEEK_FILE}}},
      {"no second seek", tiff, tiff, NO, {{.call = Call::SEEK_FILE, .nth = 2}}},
      {"no read", tiff, tiff, NO, {{.call = Call::READ_FILE}}},
  };
  for (const auto& [name, head, content, verdict, faults] : CASES) {
    LayOut(head);
    TheMachine().files[L"sample"] = content;
    TheMachine().faults = faults;
    EXPECT_EQ(AskAboutHead(DetectPaintImage, head, head.size()), verdict) << name;
  }
}

}  // namespace
}  // namespace typescout::tests
