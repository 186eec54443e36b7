// Memory that runs out on demand: replaces the program's operator new.
#ifndef TYPESCOUT_HOST_MEMORY_FAILING_ALLOCATION_H
#define TYPESCOUT_HOST_MEMORY_FAILING_ALLOCATION_H

#include <cstddef>

namespace memory_host {

// Counts the allocations while it lives; the `nth` (from 1; 0: none) fails, alone or with all later
// ones. One at a time, on one thread.
class FailingAllocation {
 public:
  explicit FailingAllocation(int nth, bool onwards = false);
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;
  ~FailingAllocation();

  // Whether there were that many.
  bool HasFailed() const;
  // How many there have been, a failed one included.
  int Count() const;
  // How many blocks more are allocated now than at the beginning.
  int Kept() const;
};

// While one lives, allocations are not counted: the in-memory machine's own are not the library's.
class Uncounted {
 public:
  Uncounted();
  Uncounted(const Uncounted&) = delete;
  Uncounted& operator=(const Uncounted&) = delete;
  ~Uncounted();
};

// The bytes that this thread has allocated so far, whether they were freed since or not.
std::size_t AllocatedBytes();

}  // namespace memory_host

#endif  // TYPESCOUT_HOST_MEMORY_FAILING_ALLOCATION_H
