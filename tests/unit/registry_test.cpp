// The registry's order and its look-ups.
#include "core/registry.h"

#include <gtest/gtest.h>

namespace typescout::tests {
namespace {

TEST(Registry, FindsTheFirstRow) {
  const struct {
    FilterId filterId;
    int index;
  } CASES[] = {{0x0700, 0},  {0x0707, 1},   {0x0710, 2}, {0x0306, 5}, {0x0339, 41}, {0x0616, 53},
               {0x0903, 92}, {0x0544, 107}, {0, 0},      {-1, 0},     {0x0706, 0},  {0x3001, 0}};
  for (const auto& c : CASES) EXPECT_EQ(FindRegistryIndex(c.filterId), c.index) << c.filterId;
}

TEST(Registry, KnowsWhichIdentifiersAreValid) {
  const FilterId VALID[] = {0x3001, 0x7FFFFFFF, 0x050C, 0x0518, 0x0519, 0x0520, 0x0521,
                            0x0524, 0x053C,     0x053D, 0x053E, 0x0543, 0x0706, 0x0708,
                            0x0709, 0x0800,     0x080A, 0x0707, 0x0321, 0x070A, 0x0544};
  for (const FilterId id : VALID) EXPECT_TRUE(IsValidFilterId(id)) << std::hex << id;
  const FilterId INVALID[] = {0x3000, 0, -1, INT32_MIN, 0x070B, 0x0300};
  for (const FilterId id : INVALID) EXPECT_FALSE(IsValidFilterId(id)) << std::hex << id;
  int validBelow0x1000 = 0;
  for (FilterId id = -0x1000; id < 0x1000; ++id) validBelow0x1000 += IsValidFilterId(id) ? 1 : 0;
  EXPECT_EQ(validBelow0x1000,
            107 + 15);  // 108 rows, of which 0x0339 stands twice, and fifteen more
}

}  // namespace
}  // namespace typescout::tests
