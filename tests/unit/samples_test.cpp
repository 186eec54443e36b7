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

TEST(Samples, AnswerAsTheTablesSayForEveryRow) {
  std::set<std::string> names;
  std::set<std::pair<Detector, Verdict>> seen;
  for (const Sample& sample : AllSamples()) {
    EXPECT_EQ(Ask(sample.detector, sample), sample.verdict == YES ? 1 : 0) << sample.name;
    EXPECT_TRUE(names.insert(sample.name).second) << sample.name << " is there twice";
    seen.emplace(sample.detector, sample.verdict);
  }
  for (const auto& [id, detect] : DetectorRegistry) {
    // What these accept depends on other modules, which have tests of their own.
    if (detect == DetectNever || detect == DetectBudi || detect == DetectCameraRaw) continue;
    EXPECT_TRUE(seen.contains({detect, YES}) && seen.contains({detect, NO})) << std::hex << id;
  }
}

// The plain text rows are asked behind nearly all others, and much is text too: no conflict.
bool IsText(FilterId filter) { return filter >= 0x0900 && filter <= 0x0904; }

// The samples that rows other than their own accept: a paragraph for each set of such rows, in it a
// line for each label. So a new sample changes one line.
std::string GoldenTable() {
  std::map<std::string, std::map<std::string, std::string>> table;
  for (const Sample& sample : AllSamples()) {
    std::ostringstream filters;
    filters << std::hex << std::uppercase << std::setfill('0');
    for (const DetectorEntry& row : DetectorRegistry) {
      if (row.filterId == sample.filter || (IsText(row.filterId) && !IsText(sample.filter)))
        continue;
      if (Ask(row.detect, sample) != 0) filters << " 0x" << std::setw(4) << row.filterId;
    }
    if (filters.str().empty()) continue;
    const std::size_t colon = sample.name.find(": ");
    table[filters.str()][sample.name.substr(0, colon)] += "  " + sample.name.substr(colon + 2);
  }
  std::string text =
      "Rows other than a sample's own that accept it; text rows are listed for text only. "
      "CONTRIBUTING.md says how to renew it.\n";
  for (const auto& [filters, labels] : table) {
    text += "accepted by" + filters + '\n';
    for (const auto& [label, samples] : labels) text += label + ':' + samples + '\n';
  }
  return text;
}

// A change of a rule shows here as a change of the rows that it was not meant for.
TEST(Samples, MeetTheGoldenTable) {
  const std::string now = GoldenTable();
  if (std::getenv("GOLDEN_TABLE") != nullptr) {
    std::ofstream(GOLDEN_TABLE_FILE, std::ios::binary) << now;
  }
  std::ostringstream was;
  was << std::ifstream(GOLDEN_TABLE_FILE, std::ios::binary).rdbuf();
  EXPECT_EQ(now, was.str());
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
