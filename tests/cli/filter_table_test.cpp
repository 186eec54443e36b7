// The program's table of filters against the library's registry.
#include "cli/filter_table.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "core/registry.h"
#include "tests/support/ask.h"
#include "typescout/typescout.h"

namespace typescout::cli {
namespace {

std::vector<int> RowsHiding(const Filter& filter) {
  std::istringstream text{std::string(filter.hiddenBy)};
  return {std::istream_iterator<int>(text), {}};
}

const DetectorEntry& Row(int row) { return DetectorRegistry[static_cast<std::size_t>(row)]; }

TEST(FilterTable, StandsInTheOrderOfTheRegistry) {
  ASSERT_EQ(GetNumTypeScoutProcs(), FILTER_COUNT);
  unsigned char nothing = 0;
  for (const Filter& filter : FILTERS) {
    EXPECT_EQ(CheckValidFilterID(filter.id), 1) << filter.name;
    int id = filter.id;
    CheckFiltersFromIDList(nullptr, &id, 1, 0, &nothing, 0);
    EXPECT_EQ(id, RowOf(*FindFilter(filter.id))) << filter.name;
    EXPECT_LE(id, RowOf(filter)) << filter.name;
  }
}

TEST(FilterTable, HasALabelForEachIdentifier) {
  std::map<std::string_view, int> ids = {{FindFilter(0x0706)->label, 0x0706}};
  for (const Filter& filter : FILTERS) {
    EXPECT_EQ(ids.try_emplace(filter.label, filter.id).first->second, filter.id) << filter.label;
    EXPECT_EQ(FindFilter(filter.id)->label, filter.label);
    EXPECT_EQ(filter.label.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789.-"),
              std::string_view::npos)
        << filter.label;
    EXPECT_FALSE(Family(filter.id).empty()) << filter.name;
    // Candidates are given by either.
    EXPECT_EQ(FindFilter(Family(filter.id)), nullptr) << filter.name;
  }
}

TEST(FilterTable, KnowsWhatIsNeverReported) {
  for (const Filter& filter : FILTERS) {
    EXPECT_EQ(IsNeverReported(filter), Row(RowOf(filter)).detect == DetectNever) << filter.name;
  }
}

// What these accept lies with modules of the suite that are not here.
const std::set<int> ROWS_OF_OTHER_MODULES = {16, 17, 18, 35};

// A file of three bytes may satisfy rows that the rows before them find too short.
constexpr std::size_t SHORTEST_TGA = 4;

// Whatever a hidden row accepts, one of the rows that hide it accepts too, and stands earlier.
TEST(FilterTable, TellsTruthfullyWhoIsHidden) {
  std::set<int> seen = ROWS_OF_OTHER_MODULES;
  for (const tests::Sample& sample : tests::AllSamples()) {
    if (sample.bytes.size() < SHORTEST_TGA) continue;
    for (const Filter& filter : FILTERS) {
      const int row = RowOf(filter);
      const std::vector<int> hiding = RowsHiding(filter);
      if (hiding.empty() || tests::Ask(Row(row).detect, sample) == 0) continue;
      seen.insert(row);
      bool isHidden = false;
      for (const int earlier : hiding) {
        EXPECT_LT(earlier, row);
        isHidden = isHidden || tests::Ask(Row(earlier).detect, sample) != 0;
      }
      EXPECT_TRUE(isHidden) << filter.name << ": " << sample.name;
    }
  }
  for (const Filter& filter : FILTERS) {
    EXPECT_TRUE(RowsHiding(filter).empty() || seen.contains(RowOf(filter)))
        << "no sample of " << filter.name;
  }
}

// A row that is not said to be hidden is the first to accept some sample.
int WinnerOf(const tests::Sample& sample) {
  for (int row = 0; row < FILTER_COUNT; ++row) {
    if (tests::Ask(Row(row).detect, sample) != 0) return row;
  }
  return -1;
}

TEST(FilterTable, ForgetsNobodyWhoIsHidden) {
  std::set<int> winners = ROWS_OF_OTHER_MODULES;
  for (tests::Sample sample : tests::AllSamples()) {
    if (sample.bytes.size() >= SHORTEST_TGA) winners.insert(WinnerOf(sample));
    // Plain text no more: the formats behind the text rows get their turn.
    sample.bytes += tests::Fill(8);
    winners.insert(WinnerOf(sample));
  }
  for (const Filter& filter : FILTERS) {
    if (ROWS_OF_OTHER_MODULES.contains(RowOf(filter))) continue;
    EXPECT_EQ(winners.contains(RowOf(filter)), filter.hiddenBy.empty()) << filter.name;
  }
}

TEST(FilterTable, FindsWhatHasNoRow) {
  EXPECT_EQ(RowOf(*FindFilter(0x0706)), -1);
  EXPECT_EQ(FindFilter(0x0708), nullptr);
  EXPECT_EQ(FindFilter("no-such-label"), nullptr);
}

}  // namespace
}  // namespace typescout::cli
