// The program's table of filters against the library's registry.
#include "cli/filter_table.h"

#include <gtest/gtest.h>

#include <algorithm>
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

bool Accepts(int row, const tests::Sample& sample) {
  return tests::Ask(Row(row).detect, sample) != 0;
}

TEST(FilterTable, StandsInTheOrderOfTheRegistry) {
  ASSERT_EQ(GetNumTypeScoutProcs(), FILTER_COUNT);
  for (const Filter& filter : FILTERS) {
    const DetectorEntry& row = Row(RowOf(filter));
    EXPECT_EQ(filter.id, row.filterId) << filter.name;
    EXPECT_EQ(IsNeverReported(filter), row.detect == DetectNever) << filter.name;
  }
  EXPECT_EQ(RowOf(*FindFilter(0x0706)), -1) << "the one without a row";
  EXPECT_EQ(FindFilter(0x0708), nullptr);
}

TEST(FilterTable, HasALabelForEachIdentifier) {
  std::map<std::string_view, int> ids = {{FindFilter(0x0706)->label, 0x0706}};
  for (const Filter& filter : FILTERS) {
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
const std::set<int> ROWS_OF_OTHER_MODULES = {16, 17, 18, 35};

// A file of three bytes may satisfy rows that the rows before them find too short.
constexpr std::size_t SHORTEST_TGA = 4;

// Whatever a hidden row accepts, one of the rows that hide it accepts too, and stands earlier.
TEST(FilterTable, TellsTruthfullyWhoIsHidden) {
  for (const Filter& filter : FILTERS) {
    const int row = RowOf(filter);
    const std::vector<int> hiding = RowsHiding(filter);
    bool isSeen = hiding.empty() || ROWS_OF_OTHER_MODULES.contains(row);
    for (const int earlier : hiding) EXPECT_LT(earlier, row);
    for (const tests::Sample& sample : tests::AllSamples()) {
      if (hiding.empty() || sample.bytes.size() < SHORTEST_TGA || !Accepts(row, sample)) continue;
      isSeen = true;
      EXPECT_TRUE(std::any_of(hiding.begin(), hiding.end(),
                              [&](int earlier) { return Accepts(earlier, sample); }))
          << filter.name << ": " << sample.name;
    }
    EXPECT_TRUE(isSeen) << "no sample of " << filter.name;
  }
}

// A row that is not said to be hidden is the first to accept some sample.
TEST(FilterTable, ForgetsNobodyWhoIsHidden) {
  std::set<int> winners = ROWS_OF_OTHER_MODULES;
  const auto addWinner = [&winners](const tests::Sample& sample) {
    int row = 0;
    while (row < FILTER_COUNT && !Accepts(row, sample)) ++row;
    winners.insert(row);
  };
  for (tests::Sample sample : tests::AllSamples()) {
    if (sample.bytes.size() >= SHORTEST_TGA) addWinner(sample);
    // Plain text no more: the formats behind the text rows get their turn.
    sample.bytes += tests::Fill(8);
    addWinner(sample);
  }
  for (const Filter& filter : FILTERS) {
    if (ROWS_OF_OTHER_MODULES.contains(RowOf(filter))) continue;
    EXPECT_EQ(winners.contains(RowOf(filter)), filter.hiddenBy.empty()) << filter.name;
  }
}

}  // namespace
}  // namespace typescout::cli
