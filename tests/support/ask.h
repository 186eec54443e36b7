// Asks detectors and the six functions, over the in-memory host.
#ifndef TYPESCOUT_TESTS_SUPPORT_ASK_H
#define TYPESCOUT_TESTS_SUPPORT_ASK_H

#include <gtest/gtest.h>

#include <string>

#include "core/probe_context.h"
#include "host/memory/memory_host.h"
#include "tests/samples/sample.h"
#include "typescout/typescout.h"

namespace typescout::tests {

// Empties the in-memory machine and puts the file on it: a compound document too when it has
// streams.
void LayOut(const File& file);

// Asks about the first `headLength` bytes of the file, which LayOut has put there; at most
// HEAD_CAPACITY of them are the head. They lie in a heap block of their exact size, so that the
// address sanitizer sees a read beyond them.
std::int32_t AskAboutHead(Detector detector, const File& file, std::size_t headLength);

// Lays the file out and asks about all of it. Fails the running test when anything stays open.
std::int32_t Ask(Detector detector, const File& file);

// The machine is empty when a test begins, and nothing may be open when it ends.
class OnTheMachine : public testing::Test {
 protected:
  OnTheMachine() { memory_host::Reset(); }
  ~OnTheMachine() override {
    EXPECT_EQ(memory_host::TheMachine().OpenObjects(), 0) << "something stays open";
  }

  // Asks one filter about bytes of the caller's, which replace a file that cannot be read.
  static FilterId AskWithBytes(const wchar_t* path, FilterId filterId, std::string bytes) {
    int id = filterId;
    return CheckFiltersFromIDList(path, &id, 1, static_cast<int>(bytes.size()),
                                  reinterpret_cast<unsigned char*>(bytes.data()), 0);
  }
};

// What a detector is given of bytes with no file behind them.
inline ProbeContext ProbeOf(const std::string& bytes) {
  ProbeContext probe = {};
  probe.head = reinterpret_cast<const unsigned char*>(bytes.data());
  probe.headLength = static_cast<std::int32_t>(bytes.size());
  return probe;
}

}  // namespace typescout::tests

#endif  // TYPESCOUT_TESTS_SUPPORT_ASK_H
