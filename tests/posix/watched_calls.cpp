#include "tests/posix/watched_calls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>

namespace typescout::tests {
namespace {

thread_local WatchedCalls* watched = nullptr;

enum class Outcome { NORMAL, FAILS, DIFFERS };

// What becomes of this call; `errno` is set when it fails.
Outcome Watch(SystemCall call) {
  if (watched == nullptr || !watched->Meets(call)) return Outcome::NORMAL;
  errno = watched->fault().error;
  return errno == 0 ? Outcome::DIFFERS : Outcome::FAILS;
}

int Stat(SystemCall call, int folder, const char* path, struct stat* status, int flags) {
  const Outcome outcome = Watch(call);
  if (outcome == Outcome::FAILS) return -1;
  const int result = fstatat(folder, path, status, flags);
  if (outcome == Outcome::DIFFERS) status->st_mode = S_IFIFO | 0600;
  return result;
}

}  // namespace

WatchedCalls::WatchedCalls(const Fault& fault)
    : fault_(fault),
      allocations_(fault.call == SystemCall::ALLOCATE ? fault.nth : 0, fault.onwards),
      allocatedBefore_(memory_host::AllocatedBytes()) {
  watched = this;
}
WatchedCalls::~WatchedCalls() { watched = nullptr; }

bool WatchedCalls::Meets(SystemCall call) {
  const int count = ++counts_[static_cast<std::size_t>(call)];
  if (fault_.nth == 0 || call != fault_.call) return false;
  if (count != fault_.nth && !(fault_.onwards && count > fault_.nth)) return false;
  hasFailed_ = true;
  return true;
}

}  // namespace typescout::tests

using typescout::tests::Outcome;
using typescout::tests::SystemCall;
using typescout::tests::Watch;
using typescout::tests::watched;

#define WATCHED __attribute__((visibility("default")))

extern "C" {

WATCHED int open(const char* path, int flags, ...) {
  std::va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  // EAGAIN says that another process holds a lease on the file; who may wait is let in.
  const bool fails = Watch(SystemCall::OPEN) == Outcome::FAILS;
  if (fails && (errno != EAGAIN || (flags & O_NONBLOCK) != 0)) return -1;
  const int file = static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
  if (watched != nullptr) {
    constexpr int KINDS = O_ACCMODE | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC | O_NOCTTY;
    if ((flags & KINDS) != (O_RDONLY | O_CLOEXEC | O_NOCTTY)) ++watched->carelessOpens;
    if (file >= 0) ++watched->openFiles;
  }
  return file;
}

WATCHED int close(int file) {
  const bool fails = Watch(SystemCall::CLOSE) == Outcome::FAILS;
  const int error = errno;
  const int result = static_cast<int>(syscall(SYS_close, file));
  if (watched != nullptr && result == 0) --watched->openFiles;
  if (!fails) return result;
  errno = error;
  return -1;
}

WATCHED int stat(const char* path, struct stat* status) {
  return typescout::tests::Stat(SystemCall::STAT, AT_FDCWD, path, status, 0);
}

WATCHED int fstat(int file, struct stat* status) {
  return typescout::tests::Stat(SystemCall::FSTAT, file, "", status, AT_EMPTY_PATH);
}

WATCHED int dl_iterate_phdr(int (*see)(dl_phdr_info*, size_t, void*), void* data) {
  static const auto real = reinterpret_cast<int (*)(int (*)(dl_phdr_info*, size_t, void*), void*)>(
      dlsym(RTLD_NEXT, "dl_iterate_phdr"));
  Watch(SystemCall::LOADER);
  return real(see, data);
}

WATCHED void* dlopen(const char* path, int flags) {
  static const auto real =
      reinterpret_cast<void* (*)(const char*, int)>(dlsym(RTLD_NEXT, "dlopen"));
  Watch(SystemCall::LOADER);
  return real(path, flags);
}

WATCHED ssize_t pread(int file, void* bytes, size_t count, off_t offset) {
  const Outcome outcome = Watch(SystemCall::READ);
  if (outcome == Outcome::FAILS) return -1;
  if (outcome == Outcome::DIFFERS) count = (count + 1) / 2;
  const ssize_t got = syscall(SYS_pread64, file, bytes, count, offset);
  if (watched != nullptr && got > 0) watched->bytesRead += static_cast<std::uint64_t>(got);
  return got;
}

}  // extern "C"
