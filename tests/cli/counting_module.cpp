// An import module that writes a line to a file each time that it is loaded.
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

struct Counter {
  Counter() {
    const char* path = std::getenv("COUNT_FILE");
    std::FILE* file = path == nullptr ? nullptr : std::fopen(path, "a");
    if (file == nullptr) return;
    std::fputs("loaded\n", file);
    std::fclose(file);
  }
};

const Counter COUNTER;

}  // namespace
