// What the samples of the PostScript family cannot say.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "core/file_context.h"
#include "detectors/postscript/illustrator.h"
#include "detectors/postscript/postscript.h"
#include "detectors/postscript/text_lines.h"
#include "tests/support/ask.h"
#include "tests/support/on_the_machine.h"

namespace typescout::tests {
namespace {

using Lines = std::vector<std::string>;

Lines LinesOf(const std::string& text, std::size_t capacity) {
  TextLineReader reader(text, capacity);
  Lines lines;
  for (std::string_view line; reader.ReadTextLine(&line);) lines.emplace_back(line);
  return lines;
}

// Skipping to each mark must find the lines with marks that reading every line finds.
TEST(TextLines, SkippingFindsTheLinesThatReadingFinds) {
  std::mt19937 random(2);
  const std::string_view pieces[] = {"mark", "m", "ark",     "\n",
                                     "\r\n", "x", "xxxxxxx", std::string_view("\0", 1)};
  for (int round = 0; round < 2000; ++round) {
    std::string text;
    for (int i = 0; i < 20; ++i) text += pieces[random() % std::size(pieces)];
    Lines expected = LinesOf(text, 9);
    std::erase_if(expected, [](const auto& line) { return line.find("mark") == line.npos; });

    TextLineReader reader(text, 9);
    MarkSearch mark(text, "mark");
    EXPECT_EQ(mark.IsAbsent(), text.find("mark") == text.npos);
    Lines found;
    std::string_view line;
    reader.SkipLinesBefore(mark.NextFrom(0));
    while (reader.ReadTextLine(&line)) {
      if (mark.IsIn(line)) found.emplace_back(line);
      reader.SkipLinesBefore(mark.NextFrom(reader.Position()));
    }
    ASSERT_EQ(found, expected) << testing::PrintToString(text);
  }
}

TEST(CreatorVersion, IsReadFromTheFirstCreatorComment) {
  const auto isAtMost8 = [](const std::string& comments) {
    const std::string text = comments + "\nA&L\n%%BoundingBox:";
    const ProbeContext probe = ProbeOf(text);
    return IsIllustratorUpToVersion8(&probe);
  };
  EXPECT_TRUE(isAtMost8("%%Creator: 8.0"));
  EXPECT_TRUE(isAtMost8(Fill(149, 'x') + "%%Creator:\n%%AI8_CreatorVersion: 8.0"));
  EXPECT_FALSE(isAtMost8(Fill(150, 'x') + "%%Creator:\n%%AI8_CreatorVersion: 8.0"));
  EXPECT_FALSE(isAtMost8("%%Creator: 8.0\n" + Fill(138, 'x') + "%%AI8_CreatorVersion:"));
  EXPECT_TRUE(isAtMost8("%%Creator: 8.0\n" + Fill(139, 'x') + "%%AI8_CreatorVersion:"));
  EXPECT_FALSE(isAtMost8(""));
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
