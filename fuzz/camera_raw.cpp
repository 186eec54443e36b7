// Fuzz target: a file that the module DCRaw looks at.
#include "fuzz/memory_file.h"

extern "C" int CheckForRaw(const wchar_t* path);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const MemoryFile file(data, size);
  const int answer = CheckForRaw(file.path().c_str());
  if (answer != 0 && answer != 1) std::abort();
  return 0;
}
