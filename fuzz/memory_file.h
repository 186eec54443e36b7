// An input as a file in memory.
#ifndef TYPESCOUT_FUZZ_MEMORY_FILE_H
#define TYPESCOUT_FUZZ_MEMORY_FILE_H

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

// There while the object lives.
class MemoryFile {
 public:
  MemoryFile(const std::uint8_t* data, std::size_t size) : descriptor_(memfd_create("input", 0)) {
    if (write(descriptor_, data, size) != static_cast<ssize_t>(size)) std::abort();
  }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile() { close(descriptor_); }

  std::wstring path() const { return L"/proc/self/fd/" + std::to_wstring(descriptor_); }

 private:
  const int descriptor_;
};

#endif  // TYPESCOUT_FUZZ_MEMORY_FILE_H
