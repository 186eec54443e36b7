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

std::set<int> RowsAccepting(const tests::Sample& sample) {
  std::set<int> rows;
  for (int row = 0; row < FILTER_COUNT; ++row) {
    if (tests::Ask(Row(row).detect, sample) != 0) rows.insert(row);
  }
  return rows;
}

// Whatever a hidden row accepts, one of the rows that hide it accepts too, and stands earlier. A
// row that is not said to be hidden is the first to accept some sample.
TEST(FilterTable, TellsTruthfullyWhoIsHidden) {
  std::set<int> seen = ROWS_OF_OTHER_MODULES;
  std::set<int> winners;
  for (tests::Sample sample : tests::AllSamples()) {
    // Behind zero bytes it is plain text no more: the formats behind the text rows get their turn.
    for (const std::size_t zeros : {0u, 8u}) {
      sample.bytes += tests::Fill(zeros);
      if (sample.bytes.size() < SHORTEST_TGA) continue;
      const std::set<int> rows = RowsAccepting(sample);
      if (!rows.empty()) winners.insert(*rows.begin());
      for (const int row : rows) {
        seen.insert(row);
        const std::vector<int> hiding = RowsHiding(FILTERS[static_cast<std::size_t>(row)]);
        EXPECT_TRUE(hiding.empty() ||
                    std::any_of(hiding.begin(), hiding.end(),
                                [&rows](int earlier) { return rows.contains(earlier); }))
            << row << ": " << sample.name;
      }
    }
  }
  for (const Filter& filter : FILTERS) {
    const int row = RowOf(filter);
    for (const int earlier : RowsHiding(filter)) EXPECT_LT(earlier, row) << filter.name;
    EXPECT_TRUE(IsNeverReported(filter) || seen.contains(row)) << filter.name;
    if (ROWS_OF_OTHER_MODULES.contains(row)) continue;
    EXPECT_EQ(winners.contains(row), filter.hiddenBy.empty()) << filter.name;
  }
}

}  // namespace
}  // namespace typescout::cli
