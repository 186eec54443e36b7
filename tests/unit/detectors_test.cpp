// What the samples cannot lay out: a caller's own bytes beside a file that opens as a compound
// document, heads longer than those of files, no path at all, parts of detectors by themselves.
#include <algorithm>
#include <random>
#include <tuple>
#include <vector>

#include "core/file_context.h"
#include "detectors/native/native.h"
#include "detectors/postscript/postscript.h"
#include "detectors/postscript/text_lines.h"
#include "tests/support/ask.h"

namespace typescout::tests {
namespace {

using memory_host::TheMachine;

const wchar_t* const PATH = L"file.pub";

class CallersBytes : public OnTheMachine {
 protected:
  static bool Check(int filterId, const std::string& bytes, const wchar_t* path = PATH) {
    return AskWithBytes(path, filterId, bytes) == filterId;
  }
};

TEST_F(CallersBytes, StandBesideAStream) {
  const std::string record = "\0\0\x02\0......"s;
  EXPECT_FALSE(Check(0x0813, record));
  TheMachine().documents[PATH].streams = {{L"ScriptoraDesk_MAIN", "....\x07\x10...."s}};
  EXPECT_TRUE(Check(0x0813, record));
  EXPECT_FALSE(Check(0x0813, record, L"other"));
}

TEST_F(CallersBytes, AreNotWhatTextAndWordRowsLookAt) {
  const std::string text = "text";
  for (const int id : {0x0900, 0x0901, 0x0902, 0x0903, 0x0904}) EXPECT_FALSE(Check(id, text)) << id;
  TheMachine().documents[PATH].streams = {{L"WordDocument", PadTo(1'536, "\xEC\xA5\xC1\0"s)}};
  EXPECT_TRUE(Check(0x0814, ""));
  EXPECT_FALSE(Check(0x0801, ""));
}

TEST_F(CallersBytes, NeedNoPath) {
  EXPECT_TRUE(Check(0x0545, "")) << "the name is enough";
  for (const int id : {0x0545, 0x0703, 0x070D, 0x0710, 0x0712, 0x0814, 0x0903}) {
    EXPECT_FALSE(Check(id, "PK\3\4", nullptr)) << id;
  }
}

// Positions among the commands are 16-bit numbers: of 70,000 bytes only 4,462 are looked at, of
// 65,538 none. Whatever the content, the search ends.
TEST_F(CallersBytes, MayBeManyInTheSearchForCommands) {
  const auto repeated = [](const std::string& unit, std::size_t size) {
    std::string bytes;
    while (bytes.size() < size) bytes += unit;
    return bytes.substr(0, size);
  };
  const std::string commands = "\xAEMD\xAFx\xAEXY";
  for (const auto& [size, at, isFound] : {std::tuple(70'000u, 0u, true),
                                          {70'000u, 4'456u, true},
                                          {70'000u, 4'457u, false},
                                          {70'000u, 66'000u, false},
                                          {65'538u, 0u, false},
                                          {65'537u, 65'000u, true}}) {
    EXPECT_EQ(Check(0x080E, Patch(Fill(size, '.'), at, commands)), isFound) << size << ", " << at;
  }
  for (const std::size_t size : {50'000U, 65'537U, 70'000U}) {
    for (const std::string unit : {"\xAE", "\xAF", "\xAE\xAF", "\xAEZZ", "\xAETS", "\xAETS.,"}) {
      EXPECT_EQ(Check(0x080E, repeated(unit, size)), unit.ends_with(",")) << unit << ", " << size;
    }
    // One command and the closing byte in the last place: the position starts over or leaves.
    const std::string once = Patch(repeated("\xAE", size), size - 4, "\xAEXY\xAF");
    EXPECT_EQ(Check(0x080E, once), size == 50'000U) << size;
  }
}

// A walk that arrives at the last byte of all reads zeros behind it.
TEST_F(CallersBytes, EndWhereAWalkGoesOn) {
  const std::string fillers = Fill(70'000, '\x01');  // records of three bytes
  EXPECT_TRUE(Check(0x0505, fillers));
  EXPECT_TRUE(Check(0x0505, Patch(fillers, 69'996, "\x02.\x01\x7E")));
  EXPECT_FALSE(Check(0x0505, Patch(fillers, 69'996, "\x02.\x04\x7E")));
  EXPECT_TRUE(Check(0x0500, "\0\x20"s + Fill(69'998)));
  EXPECT_FALSE(Check(0x0500, Fill(70'000, ' ')));
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

// Skipping to each mark must find the lines with marks that reading every line finds.
TEST(TextLines, SkippingFindsTheLinesThatReadingFinds) {
  std::mt19937 random(2);
  const std::string_view pieces[] = {"mark", "m", "ark",     "\n",
                                     "\r\n", "x", "xxxxxxx", std::string_view("\0", 1)};
  for (int round = 0; round < 2000; ++round) {
    std::string text;
    for (int i = 0; i < 20; ++i) text += pieces[random() % std::size(pieces)];
    std::vector<std::string> expected, found;
    std::string_view line;
    TextLineReader everyLine(text, 9);
    while (everyLine.ReadTextLine(&line)) {
      if (line.find("mark") != line.npos) expected.emplace_back(line);
    }
    TextLineReader reader(text, 9);
    MarkSearch mark(text, "mark");
    EXPECT_EQ(mark.IsAbsent(), text.find("mark") == text.npos);
    reader.SkipLinesBefore(mark.NextFrom(0));
    while (reader.ReadTextLine(&line)) {
      if (mark.IsIn(line)) found.emplace_back(line);
      reader.SkipLinesBefore(mark.NextFrom(reader.Position()));
    }
    ASSERT_EQ(found, expected) << testing::PrintToString(text);
  }
}

TEST(Illustrator, WithoutAFileContextADosEpsHeaderDoesNotMatter) {
  const std::string bytes = "\xC5\xD0\xD3\xC6\nA&L %%BoundingBox:";
  ProbeContext probe = ProbeOf(bytes);
  EXPECT_NE(DetectIllustrator(&probe), 0);
  FileContext file;
  probe.file = &file;
  EXPECT_EQ(DetectIllustrator(&probe), 0);
}

TEST(Eps, WithoutAHeadIsNone) {
  ProbeContext probe = ProbeOf("");
  probe.head = nullptr;
  probe.headLength = 32;
  EXPECT_EQ(DetectEps(&probe), 0);
}

// Every pair of letters in front of an IN that only a known instruction lets pass.
TEST(Hpgl, KnowsItsMnemonicsAndNoOthers) {
  const std::string KNOWN =
      " AA AC AD AF AH AP AR AS AT BL BP CA CC CF CI CM CP CR CS CT CV DC DF DI DL DP DR DS DT DV"
      " EA EC EP ER ES EW FI FN FP FR FS FT GC GM GP IM IN IP IR IV IW KY LA LB LO LT MC MG MT NP"
      " NR OA OC OD OE OF OG OH OI OK OL OO OP OS OT OW PA PB PC PD PE PG PM PR PS PT PU PW QL RA"
      " RF RO RP RR RT SA SB SC SD SG SI SL SM SP SR SS ST SV TD TL TR UC UF UL VS WD WG WU XT YT ";
  ASSERT_EQ(KNOWN.size(), 120u * 3 + 1);
  for (char first = 'A'; first <= 'Z'; ++first) {
    for (char second = 'A'; second <= 'Z'; ++second) {
      const std::string pair = {first, second};
      const bool isKnown = KNOWN.find(" " + pair + " ") != std::string::npos;
      EXPECT_EQ(Ask(DetectHpgl, pair + ";\x03IN;") != 0, isKnown) << pair;
    }
  }
}

}  // namespace
}  // namespace typescout::tests
