// What a call reads and opens: each thing once, and nothing that the head tells already.
#include "core/probed_file.h"

#include <algorithm>
#include <string>
#include <vector>

#include "core/file_context.h"
#include "detectors/native/native.h"
#include "host/memory/failing_allocation.h"
#include "tests/samples/sample.h"
#include "tests/support/ask.h"
#include "tests/support/on_the_machine.h"

namespace typescout::tests {
namespace {

using memory_host::Call;
using memory_host::TheMachine;

constexpr std::size_t HEAD = HEAD_CAPACITY;
const wchar_t* const PATH = L"file";
const std::string SIGNATURE = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1";
const std::string EARLY_SIGNATURE = "\x0E\x11\xFC\x0D\xD0\xCF\x11\x0E";

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
    const std::string at = {static_cast<char>(directory & 0xFF), static_cast<char>(directory >> 8)};
    return Patch(PadTo(size, "II*\0"s), 4, at);
  };
  EXPECT_EQ(opens(tiff(HEAD + 20, HEAD + 10), 0x0710), 1);
  EXPECT_EQ(opens(tiff(HEAD - 14, HEAD + 10), 0x0710), 1);
  EXPECT_EQ(opens(tiff(HEAD - 13, HEAD + 10), 0x0710), 2);
  EXPECT_EQ(opens(tiff(HEAD - 13, HEAD), 0x0710), 1) << "the head is the file";
}

// The paint program's tag around the end of the head: the answer is the same from the head as from
// the file alone.
TEST_F(ProbedFiles, AnswerAsTheFileAloneWould) {
  const std::string name = "Tavon PIXEL-FORGE\0"s;
  const auto number = [](std::size_t value) {
    return std::string{static_cast<char>(value & 0xFF), static_cast<char>(value >> 8)} + Fill(2);
  };
  int yes = 0;
  for (std::size_t directory = HEAD - 40; directory < HEAD + 4; ++directory) {
    for (const std::size_t nameAt : {std::size_t{8}, HEAD - 18, HEAD - 17, HEAD + 40}) {
      std::string tiff = Patch(PadTo(HEAD + 20, "II*\0"s), 4, number(directory));
      tiff = Patch(tiff, directory + 2, "\x31\x01\x02\0\x12\0\0\0"s + number(nameAt));
      tiff = Patch(tiff, nameAt, name);
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
  const struct {
    std::string head;
    bool isAsked;
  } CASES[] = {{SIGNATURE, true},
               {EARLY_SIGNATURE, true},
               {SIGNATURE.substr(0, 7) + "\xE0", false},
               {EARLY_SIGNATURE.substr(0, 7) + "\x0F", false},
               {SIGNATURE.substr(0, 7), false},
               {"", false}};
  for (const auto& c : CASES) {
    memory_host::Reset();
    TheMachine().files[PATH] = c.head;
    TheMachine().documents[PATH].streams = {{L"WordDocument", PadTo(1'536, "\xEC\xA5\xC1")}};
    EXPECT_EQ(CheckOneFilter(PATH, 0x0814, 0), c.isAsked) << c.head;
    EXPECT_EQ(Calls(Call::OPEN_STORAGE), c.isAsked) << c.head;
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

}  // namespace
}  // namespace typescout::tests
