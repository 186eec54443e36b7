// Whatever fails, at whatever moment: the answer is the right one, a clean no, or the one
// exception, and nothing stays open.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "detectors/vector/vector.h"
#include "host/memory/failing_allocation.h"
#include "host/memory/memory_host.h"
#include "tests/samples/sample.h"
#include "tests/support/ask.h"
#include "typescout/typescout.h"

namespace typescout::tests {
namespace {

using memory_host::Call;
using memory_host::TheMachine;

// Asks about a sample that is laid out: the whole registry, or the sample's own row.
int AskModule(const Sample& sample, bool wholeRegistry) {
  return wholeRegistry ? TypeScoutFile(sample.path.c_str())
                       : CheckOneFilter(sample.path.c_str(), sample.filter, sample.requested);
}

// Runs the question with the first, second, ... moment failing until there are no more moments.
// `fail` lays the fault and asks; it says whether the fault was met.
void FailAtEveryMoment(const std::string& what, const std::function<bool(int nth)>& fail) {
  constexpr int ENOUGH = 1'000;
  for (int nth = 1; fail(nth); ++nth) {
    ASSERT_EQ(TheMachine().OpenObjects(), 0) << what << ", moment " << nth;
    ASSERT_LT(nth, ENOUGH) << what;
  }
}

class Faults : public testing::TestWithParam<bool> {};

TEST_P(Faults, OfTheHostLeaveNothingOpen) {
  const Call CALLS[] = {Call::OPEN_FILE,    Call::READ_FILE,   Call::SEEK_FILE,
                        Call::OPEN_STORAGE, Call::READ_CLASS,  Call::IS_STORAGE_FILE,
                        Call::OPEN_STREAM,  Call::READ_STREAM, Call::LOAD_MODULE};
  for (const Sample& sample : AllSamples()) {
    LayOut(sample);
    const int whole = AskModule(sample, GetParam());
    for (const Call call : CALLS) {
      FailAtEveryMoment(sample.name, [&](int nth) {
        LayOut(sample);
        TheMachine().faults = {{.call = call, .nth = nth, .code = STG_E_LOCKVIOLATION}};
        try {
          const int answer = AskModule(sample, GetParam());
          // A Publisher file that cannot be opened as a compound document goes by its name.
          if (!GetParam() && sample.detector != DetectPublisher) {
            EXPECT_TRUE(answer == 0 || answer == whole) << sample.name;
          }
        } catch (int value) {
          EXPECT_EQ(value, 0);
        }
        return TheMachine().calls[call] >= nth;
      });
    }
  }
}

TEST_P(Faults, OfMemoryLeaveNothingOpen) {
  for (const Sample& sample : AllSamples()) {
    FailAtEveryMoment(sample.name, [&](int nth) {
      LayOut(sample);
      const memory_host::FailingAllocation failing(nth);
      AskModule(sample, GetParam());
      return failing.HasFailed();
    });
  }
}

TEST(CallersBytesFaults, OfMemoryAreACleanNo) {
  memory_host::Reset();
  unsigned char png[] = "\x89PNG\r\n\x1A\n";
  int row = 40;
  const auto ask = [&](int nth) {
    const memory_host::FailingAllocation failing(nth);
    return CheckFiltersFromList(nullptr, &row, 1, 8, png, 0);
  };
  EXPECT_EQ(ask(1), 0);
  EXPECT_EQ(ask(2), 0x0322) << "there is but one";
}

INSTANTIATE_TEST_SUITE_P(Scan, Faults, testing::Bool(), [](const auto& scan) {
  return scan.param ? std::string("WholeRegistry") : std::string("OneRow");
});

}  // namespace
}  // namespace typescout::tests
