// Every sample: against its detector, against every row of the registry, and cut at every length.
#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <map>
#include <set>
#include <sstream>
#include <vector>

#include "core/registry.h"
#include "detectors/native/native.h"
#include "detectors/raster/raster.h"
#include "tests/support/ask.h"

namespace typescout::tests {
namespace {

TEST(Samples, AnswerAsTheTablesSay) {
  for (const Sample& sample : AllSamples()) {
    EXPECT_EQ(Ask(sample.detector, sample), sample.verdict == YES ? 1 : 0) << sample.name;
  }
}

TEST(Samples, HaveNamesOfTheirOwn) {
  std::set<std::string> names;
  for (const Sample& sample : AllSamples()) {
    EXPECT_TRUE(names.insert(sample.name).second) << sample.name << " is there twice";
  }
}

TEST(Samples, StandForEveryRow) {
  for (const DetectorEntry& row : DetectorRegistry) {
    // No file makes these say yes: other modules do, which tests of their own lay out.
    if (row.detect == DetectNever || row.detect == DetectBudi || row.detect == DetectCameraRaw) {
      continue;
    }
    for (const Verdict verdict : {YES, NO}) {
      EXPECT_TRUE(std::any_of(AllSamples().begin(), AllSamples().end(),
                              [&](const Sample& sample) {
                                return sample.detector == row.detect && sample.verdict == verdict;
                              }))
          << std::hex << row.filterId << " has no " << (verdict == YES ? "yes" : "no");
    }
  }
}

// The samples to which other rows than their own say yes, and the filters of those rows.
using OtherRows = std::map<std::string, std::string>;

OtherRows OtherRowsNow() {
  OtherRows found;
  for (const Sample& sample : AllSamples()) {
    std::ostringstream filters;
    filters << std::hex << std::uppercase << std::setfill('0');
    for (const DetectorEntry& row : DetectorRegistry) {
      if (row.filterId == sample.filter || Ask(row.detect, sample) == 0) continue;
      filters << " 0x" << std::setw(4) << row.filterId;
    }
    if (!filters.str().empty()) found[sample.name] = filters.str();
  }
  return found;
}

// The table is a paragraph for each set of filters: a line for each label with its samples, parted
// by two spaces. So a new sample changes one line.
constexpr const char* SEPARATOR = "  ";

void WriteGoldenTable(const OtherRows& rows) {
  std::map<std::string, std::map<std::string, std::vector<std::string>>> table;
  for (const Sample& sample : AllSamples()) {
    const auto row = rows.find(sample.name);
    if (row == rows.end()) continue;
    const std::size_t colon = sample.name.find(": ");
    table[row->second][sample.name.substr(0, colon)].push_back(sample.name.substr(colon + 2));
  }
  std::ofstream file(GOLDEN_TABLE_FILE, std::ios::binary);
  file << "Other rows than a sample's own that say yes to it. CONTRIBUTING.md says how to renew "
          "it.\n";
  for (const auto& [filters, labels] : table) {
    file << "yes from" << filters << '\n';
    for (const auto& [label, samples] : labels) {
      file << label << ':';
      for (const std::string& sample : samples) file << SEPARATOR << sample;
      file << '\n';
    }
  }
}

OtherRows ReadGoldenTable() {
  OtherRows rows;
  std::ifstream file(GOLDEN_TABLE_FILE, std::ios::binary);
  std::string filters;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("yes from")) filters = line.substr(8);
    std::size_t at = line.find(SEPARATOR);
    const std::string label = line.substr(0, at) + ' ';
    while (at != std::string::npos) {
      const std::size_t end = line.find(SEPARATOR, at + 2);
      rows[label + line.substr(at + 2, end - at - 2)] = filters;
      at = end;
    }
  }
  return rows;
}

// A change of a rule shows here as a change of the rows that it was not meant for.
TEST(Samples, MeetTheGoldenTable) {
  const OtherRows now = OtherRowsNow();
  if (std::getenv("GOLDEN_TABLE") != nullptr) WriteGoldenTable(now);
  OtherRows was = ReadGoldenTable();
  for (const auto& [sample, filters] : now) {
    EXPECT_EQ(filters, was[sample]) << sample;
    was.erase(sample);
  }
  for (const auto& [sample, filters] : was)
    ADD_FAILURE() << "no longer so:" << filters << " say yes to " << sample;
}

// Whether a sample is cut at this length: everywhere, except in the long middle of a long one,
// where a stride says as much in a fraction of the time.
bool IsCut(std::size_t length, std::size_t size) {
  return length <= 1'100 || length + 70 >= size || length % 997 == 0;
}

TEST(Samples, AreSafeCutAnywhere) {
  for (const Sample& sample : AllSamples()) {
    LayOut(sample);
    const std::size_t size = std::min<std::size_t>(sample.bytes.size(), HEAD_CAPACITY);
    for (std::size_t length = 0; length <= size; ++length) {
      if (!IsCut(length, size)) continue;
      memory_host::TheMachine().files[sample.path] = sample.bytes.substr(0, length);
      for (const DetectorEntry& row : DetectorRegistry) {
        const std::int32_t answer = AskAboutHead(row.detect, sample, length);
        ASSERT_TRUE(answer == 0 || answer == 1) << sample.name << " cut to " << length;
      }
      ASSERT_EQ(memory_host::TheMachine().OpenObjects(), 0) << sample.name << " cut to " << length;
    }
  }
}

}  // namespace
}  // namespace typescout::tests
