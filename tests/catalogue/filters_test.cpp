// The catalogue against the library's registry and its answers.
#include "catalogue/filters.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <tuple>
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
TEST(Catalogue, NamesTheRowsThatHideARow) {
  std::set<int> seen = IDS_OF_OTHER_MODULES;
  std::set<int> winners;
  for (tests::Sample sample : tests::AllSamples()) {
    // With zero bytes it is no plain text any more, so the rows after the text rows are asked.
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
  EXPECT_EQ(Best("", "nothing"), 0);
  int named = 0;
  for (const tests::Sample& sample : tests::AllSamples()) {
    if (sample.best == 0) continue;
    EXPECT_EQ(Best(sample.bytes, std::string(sample.path.begin(), sample.path.end())), sample.best)
        << sample.name;
    ++named;
  }
  EXPECT_GT(named, 15);
}

TEST(Catalogue, AsksOnlyRowsThatHaveNotRefused) {
  const auto row = [](int id) { return RowOf(*FindFilter(id)); };
  const Filter& jpeg = *FindFilter(0x0306);
  EXPECT_EQ(RowsThatDescribeBetter(jpeg, ""), (std::vector{row(0x0337), row(0x0304)}));
  const std::vector<int> asked = {row(0x0304), row(0x0306), row(0x0710)};
  EXPECT_EQ(RowsThatDescribeBetter(jpeg, "", asked), std::vector{row(0x0710)});
  EXPECT_EQ(RowsThatDescribeBetter(*FindFilter(0x0706), "tif"), std::vector<int>());
}

TEST(Catalogue, ExpectsTheExtensionOfTheBest) {
  // No extension is no wrong one; text may have any but that of something else.
  const std::tuple<int, const char*, const char*> CASES[] = {
      {0x0304, "jpg", "tif"}, {0x0304, "tiff", ""}, {0x0304, "", ""},
      {0x0903, "cpp", ""},    {0x0903, "html", ""}, {0x0903, "gif", "txt"}};
  for (const auto& [id, extension, expected] : CASES) {
    EXPECT_EQ(ExpectedExtension(*FindFilter(id), extension), expected) << extension;
  }
  EXPECT_EQ(ExtensionOf("a.b/Scan.TIF"), "tif");
  EXPECT_EQ(ExtensionOf("a.b\\scan"), "");
  EXPECT_EQ(ExtensionOf(".profile"), "");
}

}  // namespace
}  // namespace typescout::catalogue
