// What tests on the in-memory machine have in common.
#ifndef TYPESCOUT_TESTS_SUPPORT_ON_THE_MACHINE_H
#define TYPESCOUT_TESTS_SUPPORT_ON_THE_MACHINE_H

#include <gtest/gtest.h>

#include <string>

#include "core/probe_context.h"
#include "host/memory/memory_host.h"
#include "typescout/typescout.h"

namespace typescout::tests {

// The machine is empty when a test begins, and nothing may be open when it ends.
class OnTheMachine : public testing::Test {
 protected:
  OnTheMachine() { memory_host::Reset(); }
  ~OnTheMachine() override {
    EXPECT_EQ(memory_host::TheMachine().OpenObjects(), 0) << "something stays open";
  }

  // Asks one filter about bytes of the caller's, which stand in for a file that cannot be read.
  static FilterId AskWithBytes(const wchar_t* path, FilterId filterId, std::string bytes) {
    int id = filterId;
    return CheckFiltersFromIDList(path, &id, 1, static_cast<int>(bytes.size()),
                                  reinterpret_cast<unsigned char*>(bytes.data()), 0);
  }
};

// What a detector is given of bytes with no file behind them.
inline ProbeContext ProbeOf(const std::string& bytes) {
  return {.head = reinterpret_cast<const unsigned char*>(bytes.data()),
          .headLength = static_cast<std::int32_t>(bytes.size()),
          .path = nullptr,
          .classId = {},
          .storage = nullptr,
          .file = nullptr};
}

}  // namespace typescout::tests

#endif  // TYPESCOUT_TESTS_SUPPORT_ON_THE_MACHINE_H
