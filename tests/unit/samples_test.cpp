// Every sample against its detector, and against every row of the registry.
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "core/registry.h"
#include "tests/samples/sample.h"
#include "tests/support/ask.h"

namespace typescout::tests {
namespace {

TEST(Samples, AnswerAsTheTablesSay) {
  for (const Sample& sample : AllSamples()) {
    EXPECT_EQ(Ask(sample.detector, sample) != 0, sample.verdict == YES) << sample.name;
  }
}

TEST(Samples, HaveNamesOfTheirOwn) {
  std::set<std::string> names;
  for (const Sample& sample : AllSamples()) {
    EXPECT_TRUE(names.insert(sample.name).second) << sample.name << " stands twice";
  }
}

}  // namespace
}  // namespace typescout::tests
