// Every sample: against its detector, against every row of the registry, and cut at every length.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <set>
#include <sstream>

#include "core/registry.h"
#include "detectors/native/native.h"
#include "detectors/raster/raster.h"
#include "host/memory/memory_host.h"
#include "tests/samples/sample.h"
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
    EXPECT_TRUE(names.insert(sample.name).second) << sample.name << " stands twice";
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

// A line a sample: its name, and the filters whose rows say yes to it.
std::string GoldenTable() {
  std::ostringstream table;
  table << std::hex << std::uppercase << std::setfill('0');
  for (const Sample& sample : AllSamples()) {
    table << sample.name << ':';
    for (const DetectorEntry& row : DetectorRegistry) {
      if (Ask(row.detect, sample) != 0) table << " 0x" << std::setw(4) << row.filterId;
    }
    table << '\n';
  }
  return table.str();
}

// A change of a rule shows here as a change of the rows that it was not meant for. To take the
// table as it is now:
// GOLDEN_TABLE=write typescout_unit_tests --gtest_filter=Samples.MeetTheGoldenTable
TEST(Samples, MeetTheGoldenTable) {
  const std::string now = GoldenTable();
  if (std::getenv("GOLDEN_TABLE") != nullptr) {
    std::ofstream(GOLDEN_TABLE_FILE, std::ios::binary) << now;
    return;
  }
  std::ifstream file(GOLDEN_TABLE_FILE, std::ios::binary);
  ASSERT_TRUE(file) << GOLDEN_TABLE_FILE;
  std::istringstream lines(now);
  std::string is;
  std::string was;
  while (std::getline(lines, is)) {
    was.clear();
    std::getline(file, was);
    EXPECT_EQ(is, was);
  }
  EXPECT_FALSE(std::getline(file, was)) << "no longer there: " << was;
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
