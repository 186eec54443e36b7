// What the samples of the suite's own formats cannot say: other roads, faults, the graphics
// library.
#include "detectors/native/native.h"
#include "core/file_context.h"
#include "tests/support/ask.h"
#include "tests/support/on_the_machine.h"

namespace typescout::tests {
namespace {

using memory_host::Call;
using memory_host::TheMachine;

TEST(Budi, IsWhatTheGraphicsLibrarySays) {
  for (const bool answer : {true, false}) {
    LayOut("\0any\0bytes");
    std::string seen;
    TheMachine().isBudi = [&](const std::string& bytes) {
      seen = bytes;
      return answer;
    };
    EXPECT_EQ(TypeScoutFile(L"sample"), answer ? 0x0713 : 0);
    EXPECT_EQ(seen, "\0any\0bytes"s);
    EXPECT_EQ(CheckOneFilter(L"sample", 0x0701, 0), answer);
    EXPECT_EQ(CheckOneFilter(L"sample", 0x0702, 0), answer);
  }
}

TEST(NativeDrawing, HasNoClassOfItsOwn) {
  const std::string bytes = "RIFF\0\0\0\0VXR9"s;
  ProbeContext probe = ProbeOf(bytes);
  EXPECT_NE(DetectNativeDrawing(&probe), 0);
  probe.classId.data1 = 1;
  EXPECT_EQ(DetectNativeDrawing(&probe), 0);
  probe.classId = {};
  probe.classId.data4[7] = 1;
  EXPECT_EQ(DetectNativeDrawing(&probe), 0);
}

// `directory` bytes in, a directory that opens with the Software tag; the name stands at the end.
std::string PaintTiff(std::size_t directory) {
  const auto name = static_cast<char>(directory + 14);
  const auto at = static_cast<char>(directory);
  std::string tiff = "II\x2A\0"s + at + "\0\0\0"s;
  tiff = Patch(tiff, directory, "\x01\0\x31\x01\x02\0\x12\0\0\0"s + name + "\0\0\0"s);
  return tiff + "Tavon PIXEL-FORGE\0"s;
}

class PaintImage : public OnTheMachine {
 protected:
  // What the row says when the call began with this head and the file holds these bytes now.
  static std::int32_t AskAboutFile(const std::string& head, const std::string& file,
                                   const std::vector<memory_host::Fault>& faults = {}) {
    LayOut(head);
    TheMachine().files[L"sample"] = file;
    TheMachine().faults = faults;
    return AskAboutHead(DetectPaintImage, head, head.size());
  }
};

TEST_F(PaintImage, ReadsItsTagFromTheFile) {
  const std::string tiff = PaintTiff(8);
  // Offsets are counted modulo 2^32: a directory at -2 has its first entry at 0, one at -6 its own
  // at -4, where no file has anything.
  const std::string wrapped = "\x31\x01\x2A\0\xFE\xFF\xFF\xFF\x0C\0\0\0Tavon PIXEL-FORGE"s;
  // The first entry's value is a name that stands before the directory.
  const std::string nameFirst =
      "II\x2A\0\x1A\0\0\0Tavon PIXEL-FORGE\0\x01\0\x31\x01\x02\0\x12\0\0\0\x08\0\0\0"s;
  const struct {
    const char* name;
    std::string head;
    std::string file;
    Verdict verdict;
  } CASES[] = {
      {"directory further on", PaintTiff(200).substr(0, 8), PaintTiff(90), NO},
      {"no tag in the head", tiff.substr(0, 8), tiff, YES},
      {"only in the head", tiff, tiff.substr(0, 8), NO},
      {"name first", nameFirst, nameFirst, YES},
      {"entry cut by a byte", nameFirst, nameFirst.substr(0, nameFirst.size() - 1), NO},
      {"directory at -2", wrapped, wrapped, YES},
      {"directory at -6", Patch(wrapped, 4, "\xFA"), wrapped, NO},
      {"name at the very end, cut to 17", wrapped, wrapped.substr(0, 29), YES},
      {"name at the very end, cut to 16", wrapped, wrapped.substr(0, 28), NO},
      {"empty by now", tiff, "", NO},
  };
  for (const auto& c : CASES) EXPECT_EQ(AskAboutFile(c.head, c.file), c.verdict) << c.name;
}

TEST_F(PaintImage, AnyFaultIsANo) {
  const memory_host::Fault FAULTS[] = {{.call = Call::OPEN_FILE},
                                       {.call = Call::SEEK_FILE},
                                       {.call = Call::SEEK_FILE, .nth = 2},
                                       {.call = Call::READ_FILE}};
  for (const auto& fault : FAULTS) EXPECT_EQ(AskAboutFile(PaintTiff(8), PaintTiff(8), {fault}), 0);
}

TEST_F(PaintImage, LeavesTheFileAloneWithoutATiffHeader) {
  for (const std::string& bytes : {"PXF9FILE1"s, "PXF9FILE"s, "some other file"s}) {
    Ask(DetectPaintImage, bytes);
    EXPECT_EQ(TheMachine().calls[Call::OPEN_FILE], 0) << bytes;
  }
}

}  // namespace
}  // namespace typescout::tests
