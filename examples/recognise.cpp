// Prints the filter identifier of a file.
#include <typescout/typescout.h>

#include <cstdio>

int main() {
  const int filter = TypeScoutFile(L"holiday.gif");
  std::printf("0x%04X\n", static_cast<unsigned>(filter));
}
