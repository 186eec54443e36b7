// A program with names that are the library's inside, too: linked statically, the two must not
// meet.
#include <typescout/typescout.h>

#include <cstdio>

struct ProbeContext {};

extern "C" int CloseHandle(void*) { return 1; }
extern "C" int StgOpenStorage() { return 2; }

namespace typescout {
int DetectGif(const ProbeContext*) { return 3; }
}  // namespace typescout

int main() {
  const int own = CloseHandle(nullptr) + StgOpenStorage() + typescout::DetectGif(nullptr);
  std::printf("0x%04X %d\n", static_cast<unsigned>(TypeScoutFile(L"holiday.gif")), own);
}
