#include "host/memory/failing_allocation.h"

#include <cstdlib>
#include <new>

namespace memory_host {
namespace {

thread_local int failing = 0;  // which one fails; 0: none
thread_local bool failsOnwards = false;
thread_local int count = 0;
thread_local int kept = 0;
thread_local int uncounted = 0;
thread_local std::size_t allocated = 0;

void* Allocate(std::size_t size) noexcept {
  if (uncounted == 0) {
    ++count;
    if (count == failing || (failsOnwards && count > failing)) return nullptr;
  }
  ++kept;
  allocated += size;
  return std::malloc(size == 0 ? 1 : size);
}

void* AllocateOrThrow(std::size_t size) {
  void* block = Allocate(size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void Free(void* block) noexcept {
  if (block != nullptr) --kept;
  std::free(block);
}

}  // namespace

FailingAllocation::FailingAllocation(int nth, bool onwards) {
  failing = nth;
  failsOnwards = nth != 0 && onwards;
  count = kept = 0;
}
FailingAllocation::~FailingAllocation() {
  failing = 0;
  failsOnwards = false;
}
bool FailingAllocation::HasFailed() const { return failing != 0 && count >= failing; }
int FailingAllocation::Count() const { return count; }
int FailingAllocation::Kept() const { return kept; }

std::size_t AllocatedBytes() { return allocated; }

Uncounted::Uncounted() { ++uncounted; }
Uncounted::~Uncounted() { --uncounted; }

}  // namespace memory_host

void* operator new(std::size_t size) { return memory_host::AllocateOrThrow(size); }
void* operator new[](std::size_t size) { return memory_host::AllocateOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return memory_host::Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return memory_host::Allocate(size);
}
void operator delete(void* block) noexcept { memory_host::Free(block); }
void operator delete[](void* block) noexcept { memory_host::Free(block); }
void operator delete(void* block, std::size_t /*size*/) noexcept { memory_host::Free(block); }
void operator delete[](void* block, std::size_t /*size*/) noexcept { memory_host::Free(block); }
