// What the samples of the suite's own formats cannot say: other roads, faults, the graphics
// library.
#include <gtest/gtest.h>

#include "core/file_context.h"
#include "detectors/native/native.h"
#include "host/memory/memory_host.h"
#include "include/typescout/typescout.h"
#include "tests/support/ask.h"

namespace typescout::tests {
namespace {

using memory_host::Call;
using memory_host::TheMachine;

TEST(Budi, IsWhatTheGraphicsLibrarySays) {
  for (const bool answer : {true, false}) {
    LayOut({.name = "", .detector = DetectBudi, .bytes = Bytes("\0any\0bytes"), .verdict = NO});
    std::string seen;
    TheMachine().isBudi = [&](const std::string& bytes) {
      seen = bytes;
      return answer;
    };
    EXPECT_EQ(TypeScoutFile(L"sample"), answer ? 0x0713 : 0);
    EXPECT_EQ(seen, Bytes("\0any\0bytes"));
    EXPECT_EQ(CheckOneFilter(L"sample", 0x0701, 0), answer);
    EXPECT_EQ(CheckOneFilter(L"sample", 0x0702, 0), answer);
  }
}

TEST(NativeDrawing, HasNoClassOfItsOwn) {
  const std::string bytes = Bytes("RIFF\0\0\0\0VXR9");
  ProbeContext probe = {.head = reinterpret_cast<const unsigned char*>(bytes.data()),
                        .headLength = static_cast<std::int32_t>(bytes.size()),
                        .path = nullptr,
                        .classId = {},
                        .storage = nullptr,
                        .file = nullptr};
  EXPECT_NE(DetectNativeDrawing(&probe), 0);
  probe.classId.data1 = 1;
  EXPECT_EQ(DetectNativeDrawing(&probe), 0);
  probe.classId = {};
  probe.classId.data4[7] = 1;
  EXPECT_EQ(DetectNativeDrawing(&probe), 0);
}

TEST(NativeFormats, WithoutAPathAZipIsNoneOfThem) {
  memory_host::Reset();
  unsigned char zip[] = {'P', 'K', 3, 4};
  int ids[] = {0x0703, 0x070D, 0x0712, 0x0710};
  EXPECT_EQ(CheckFiltersFromIDList(nullptr, ids, 4, sizeof zip, zip, 0), 0);
}

// `directory` bytes in, a directory that opens with the Software tag; the name stands at the end.
std::string PaintTiff(std::size_t directory) {
  const auto name = static_cast<char>(directory + 14);
  const auto at = static_cast<char>(directory);
  std::string tiff = Bytes("II\x2A\0") + at + Bytes("\0\0\0");
  tiff = Patch(tiff, directory, Bytes("\x01\0\x31\x01\x02\0\x12\0\0\0") + name + Bytes("\0\0\0"));
  return tiff + Bytes("Tavon PIXEL-FORGE\0");
}

struct PaintCase {
  const char* name;
  std::string head;  // what was read when the call began
  std::string file;  // what the file holds now
  Verdict verdict;
};

TEST(PaintImage, ReadsItsTagFromTheFile) {
  const std::string tiff = PaintTiff(8);
  // Offsets are counted modulo 2^32: a directory at -2 has its first entry at 0, one at -6 its own
  // at -4, where no file has anything.
  const std::string wrapped = Bytes("\x31\x01\x2A\0\xFE\xFF\xFF\xFF\x0C\0\0\0Tavon PIXEL-FORGE");
  // The first entry's value is a name that stands before the directory.
  const std::string nameFirst =
      Bytes("II\x2A\0\x1A\0\0\0Tavon PIXEL-FORGE\0\x01\0\x31\x01\x02\0\x12\0\0\0\x08\0\0\0");
  const PaintCase cases[] = {
      {"as it was", tiff, tiff, YES},
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
  for (const PaintCase& paint : cases) {
    const Sample sample{
        .name = paint.name, .detector = DetectPaintImage, .bytes = paint.head, .verdict = NO};
    LayOut(sample);
    TheMachine().files[L"sample"] = paint.file;
    EXPECT_EQ(AskAboutHead(DetectPaintImage, sample, paint.head.size()), paint.verdict)
        << paint.name;
    EXPECT_EQ(TheMachine().OpenObjects(), 0) << paint.name;
  }
}

TEST(PaintImage, AnyFaultIsANo) {
  const Sample sample{
      .name = "paint", .detector = DetectPaintImage, .bytes = PaintTiff(8), .verdict = YES};
  const memory_host::Fault faults[] = {{.call = Call::OPEN_FILE},
                                       {.call = Call::SEEK_FILE},
                                       {.call = Call::SEEK_FILE, .nth = 2},
                                       {.call = Call::READ_FILE}};
  for (const memory_host::Fault& fault : faults) {
    LayOut(sample);
    TheMachine().faults = {fault};
    EXPECT_EQ(AskAboutHead(DetectPaintImage, sample, sample.bytes.size()), 0);
    EXPECT_EQ(TheMachine().OpenObjects(), 0);
  }
}

TEST(PaintImage, LeavesTheFileAloneWithoutATiffHeader) {
  for (const char* bytes : {"PXF9FILE1", "PXF9FILE", "some other file"}) {
    Ask(DetectPaintImage, bytes);
    EXPECT_EQ(TheMachine().calls[Call::OPEN_FILE], 0) << bytes;
  }
}

}  // namespace
}  // namespace typescout::tests
