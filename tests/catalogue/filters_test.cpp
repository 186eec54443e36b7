// The catalogue against the library's registry and its answers.
#include "catalogue/filters.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "core/registry.h"
#include "tests/support/ask.h"

namespace typescout::catalogue {
namespace {

const DetectorEntry& Row(int row) { return DetectorRegistry[static_cast<std::size_t>(row)]; }

TEST(Catalogue, StandsInTheOrderOfTheRegistry) {
  ASSERT_EQ(Filters().size(), DetectorRegistry.size());
  for (const Filter& filter : Filters()) {
    const DetectorEntry& row = Row(RowOf(filter));
    EXPECT_EQ(filter.id, row.filterId) << filter.name;
    EXPECT_EQ(filter.evidence == Evidence::NEVER, row.detect == DetectNever) << filter.name;
  }
  EXPECT_EQ(RowOf(*FindFilter(0x0706)), -1) << "the one without a row";
  EXPECT_EQ(FindFilter(0x0708), nullptr);
}

TEST(Catalogue, HasALabelForEachIdentifier) {
  std::map<std::string_view, int> ids = {{FindFilter(0x0706)->label, 0x0706}};
  for (const Filter& filter : Filters()) {
    EXPECT_EQ(ids.try_emplace(filter.label, filter.id).first->second, filter.id) << filter.label;
    EXPECT_EQ(FindFilter(filter.id)->label, filter.label);
    EXPECT_LE(RowOf(*FindFilter(filter.id)), RowOf(filter)) << "the first row";
    EXPECT_EQ(filter.label.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789.-"),
              std::string_view::npos)
        << filter.label;
    EXPECT_FALSE(Family(filter.id).empty()) << filter.name;
    // Candidates are given by either.
    EXPECT_EQ(FindFilter(Family(filter.id)), nullptr) << filter.name;
  }
}

// What these accept lies with modules of the suite that are not here.
const std::set<int> IDS_OF_OTHER_MODULES = {0x0713, 0x0701, 0x0702, 0x0337};

// A file of three bytes may satisfy rows that the rows before them find too short.
constexpr std::size_t SHORTEST_TGA = 4;

std::vector<int> RowsAccepting(const tests::File& file) {
  std::vector<int> rows;
  for (const Filter& filter : Filters()) {
    if (tests::Ask(Row(RowOf(filter)).detect, file) != 0) rows.push_back(RowOf(filter));
  }
  return rows;
}

// Whatever a hidden row accepts, one of the rows that hide it accepts too, and stands earlier. A
// row that is not said to be hidden is the first to accept some sample.
TEST(Catalogue, TellsTruthfullyWhoIsHidden) {
  std::set<int> seen = IDS_OF_OTHER_MODULES;
  std::set<int> winners;
  for (tests::Sample sample : tests::AllSamples()) {
    // Behind zero bytes it is plain text no more: the formats behind the text rows get their turn.
    for (const std::size_t zeros : {0u, 8u}) {
      sample.bytes += tests::Fill(zeros);
      if (sample.bytes.size() < SHORTEST_TGA) continue;
      const std::vector<int> rows = RowsAccepting(sample);
      if (!rows.empty()) winners.insert(rows.front());
      for (auto row = rows.begin(); row != rows.end(); ++row) {
        const Filter& filter = Filters()[static_cast<std::size_t>(*row)];
        seen.insert(filter.id);
        const auto hides = [&filter](int earlier) {
          return std::ranges::find(filter.hiddenBy, Row(earlier).filterId) != filter.hiddenBy.end();
        };
        EXPECT_TRUE(filter.hiddenBy[0] == 0 || std::any_of(rows.begin(), row, hides))
            << filter.name << ": " << sample.name;
      }
    }
  }
  for (const Filter& filter : Filters()) {
    EXPECT_TRUE(filter.evidence == Evidence::NEVER || seen.contains(filter.id)) << filter.name;
    for (const int id : filter.hiddenBy) {
      EXPECT_TRUE(id == 0 || RowOf(*FindFilter(id)) < RowOf(filter)) << filter.name;
    }
    if (IDS_OF_OTHER_MODULES.contains(filter.id) || filter.evidence == Evidence::NEVER) continue;
    EXPECT_EQ(winners.contains(RowOf(filter)), filter.hiddenBy[0] == 0) << filter.name;
  }
}

// What a program does with the catalogue: asks all rows, then those that may describe better.
int Best(const std::string& bytes, std::string_view name) {
  const std::vector<int> rows = RowsAccepting(bytes);
  if (rows.empty()) return 0;
  const Filter& answer = Filters()[static_cast<std::size_t>(rows.front())];
  for (const int row : RowsThatDescribeBetter(answer, ExtensionOf(name))) {
    if (std::ranges::find(rows, row) != rows.end()) return Row(row).filterId;
  }
  return answer.id;
}

TEST(Catalogue, FindsWhatDescribesBest) {
  using namespace std::string_literals;
  using tests::PadTo;
  const std::string tiff = PadTo(64, "II*\0\x08\0\0\0"s);
  const std::string jpeg = "\xFF\xD8\xFF\xC0\0\x11\x08\0\1\0\1\3\1\x11\0\2\x11\0\3\x11\0"s;
  const std::string icon = PadTo(64, "\0\0\1\0\1\0"s);
  const std::string cursor = PadTo(64, "\0\0\2\0\1\0"s);
  const std::string program = tests::Patch(PadTo(256, "MZ"), 60, "\x80"s);
  const std::string executable = tests::Patch(program, 128, "PE\0\0"s);
  const struct {
    std::string_view name;
    std::string bytes;
    int best;
  } CASES[] = {
      {"scan", tiff, 0x0304},
      {"scan.jpg", tiff, 0x0304},
      {"photo.tif", jpeg, 0x0306},
      {"favicon", icon, 0x0310},
      {"favicon.tga", icon, 0x0310},
      {"pointer", cursor, 0x0311},
      {"picture.TGA", cursor, 0x0303},
      {"table.wk1", PadTo(64, "\0\0\2\0\4\4"s), 0x0812},
      {"tool", executable, 0x0312},
      {"tool.ico", executable, 0x0312},
      {"tool.sys", executable, 0x0312},
      {"clip", PadTo(64, "\0\0\1\xBA"s), 0x060F},
      {"page.txt", "<title>A page</title>", 0x0615},
      {"notes", "plain words\r\n", 0x0903},
      {"notes.html", "plain words\r\n", 0x0903},
      {"art.eps", "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 9 9\n", 0x0509},
      {"art.ps", "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 9 9\n", 0x050A},
      {"nothing", "", 0},
  };
  for (const auto& [name, bytes, best] : CASES) EXPECT_EQ(Best(bytes, name), best) << name;
}

TEST(Catalogue, AsksOnlyRowsThatHaveNotSaidNo) {
  const Filter& jpeg = *FindFilter(0x0306);
  const auto id = [](int row) { return Row(row).filterId; };
  const auto ids = [&id](std::vector<int> rows) {
    std::ranges::transform(rows, rows.begin(), id);
    return rows;
  };
  const int tiff = RowOf(*FindFilter(0x0304));
  const int paint = RowOf(*FindFilter(0x0710));
  EXPECT_EQ(ids(RowsThatDescribeBetter(jpeg, "")), (std::vector{0x0337, 0x0304}));
  EXPECT_EQ(ids(RowsThatDescribeBetter(jpeg, "", std::vector{tiff, RowOf(jpeg), paint})),
            (std::vector{0x0710}));
  EXPECT_EQ(RowsThatDescribeBetter(*FindFilter(0x0706), "tif"), std::vector<int>());
}

TEST(Catalogue, ExpectsTheExtensionOfTheBest) {
  const Filter& tiff = *FindFilter(0x0304);
  const Filter& text = *FindFilter(0x0903);
  EXPECT_EQ(ExpectedExtension(tiff, "jpg"), "tif");
  EXPECT_EQ(ExpectedExtension(tiff, "tiff"), "");
  EXPECT_EQ(ExpectedExtension(tiff, ""), "") << "no extension is no wrong one";
  EXPECT_EQ(ExpectedExtension(text, "cpp"), "") << "nobody's";
  EXPECT_EQ(ExpectedExtension(text, "html"), "") << "written as text";
  EXPECT_EQ(ExpectedExtension(text, "gif"), "txt");
  EXPECT_EQ(ExtensionOf("a.b/Scan.TIF"), "tif");
  EXPECT_EQ(ExtensionOf("a.b\\scan"), "");
  EXPECT_EQ(ExtensionOf(".profile"), "");
}

}  // namespace
}  // namespace typescout::catalogue
