// Examines bytes that are in memory and in no file.
#include <typescout/typescout.h>

#include <cstdio>
#include <numeric>
#include <vector>

int main() {
  unsigned char content[] = "{\\rtf1 Dear all,}";

  // Without a path the buffer is examined. Naming every row, in order, makes it a full scan.
  std::vector<int> rows(static_cast<std::size_t>(GetNumTypeScoutProcs()));
  std::iota(rows.begin(), rows.end(), 0);
  const int filter = CheckFiltersFromList(nullptr, rows.data(), static_cast<int>(rows.size()),
                                          sizeof content - 1, content, 0);
  std::printf("0x%04X\n", static_cast<unsigned>(filter));
}
