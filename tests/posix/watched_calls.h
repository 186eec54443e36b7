// The module's calls to the system, counted and made to fail. A program that links this has the
// functions open, stat, fstat, pread and close and the operator new of its own, and the loader
// binds the module to them.
#ifndef TYPESCOUT_TESTS_POSIX_WATCHED_CALLS_H
#define TYPESCOUT_TESTS_POSIX_WATCHED_CALLS_H

#include <array>
#include <cstddef>
#include <cstdint>

#include "host/memory/failing_allocation.h"

namespace typescout::tests {

// LOADER: dl_iterate_phdr() and dlopen(), which take the loader's lock; they are only counted.
enum class SystemCall { OPEN, STAT, FSTAT, READ, CLOSE, ALLOCATE, LOADER };
inline constexpr std::size_t SYSTEM_CALLS = 7;

// What goes wrong with the nth call (from 1) of a kind, or from it on with all of that kind.
struct Fault {
  SystemCall call = SystemCall::OPEN;
  int nth = 0;  // 0: nothing goes wrong
  bool onwards = false;
  // What `errno` says of a call that fails; 0 when the call succeeds, but otherwise than it should:
  // a read brings half of the bytes, fstat() calls the file a pipe. A close() that fails closes all
  // the same, and memory always fails.
  int error = 0;
};

// Watches the calls of this thread while it lives. One at a time on a thread.
class WatchedCalls {
 public:
  explicit WatchedCalls(const Fault& fault = {});
  WatchedCalls(const WatchedCalls&) = delete;
  WatchedCalls& operator=(const WatchedCalls&) = delete;
  ~WatchedCalls();

  // What has happened.
  int Count(SystemCall call) const { return counts_[static_cast<std::size_t>(call)]; }
  bool HasFailed() const { return hasFailed_ || allocations_.HasFailed(); }
  std::size_t AllocatedBytes() const { return memory_host::AllocatedBytes() - allocatedBefore_; }
  int KeptBlocks() const { return allocations_.Kept(); }
  std::uint64_t bytesRead = 0;
  int openFiles = 0;
  int carelessOpens = 0;  // not for reading alone, or left open in programs that are started

  // For the functions that are watched: counts the call, and tells whether it goes wrong.
  bool Meets(SystemCall call);
  const Fault& fault() const { return fault_; }

 private:
  const Fault fault_;
  std::array<int, SYSTEM_CALLS> counts_ = {};
  bool hasFailed_ = false;
  const memory_host::FailingAllocation allocations_;
  const std::size_t allocatedBefore_;
};

}  // namespace typescout::tests

#endif  // TYPESCOUT_TESTS_POSIX_WATCHED_CALLS_H
