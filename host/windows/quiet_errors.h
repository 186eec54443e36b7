// Keeps the system's message boxes away.
#ifndef TYPESCOUT_HOST_WINDOWS_QUIET_ERRORS_H
#define TYPESCOUT_HOST_WINDOWS_QUIET_ERRORS_H

#include <windows.h>

namespace windows_host {

// While it lives, a drive without a disk or a damaged module is an error code on this thread, not a
// question to the user that would block the call.
class QuietErrors {
 public:
  QuietErrors() {
    changed_ = SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &before_) != 0;
  }
  QuietErrors(const QuietErrors&) = delete;
  QuietErrors& operator=(const QuietErrors&) = delete;
  ~QuietErrors() {
    if (changed_) SetThreadErrorMode(before_, nullptr);
  }

 private:
  DWORD before_ = 0;
  bool changed_ = false;
};

}  // namespace windows_host

#endif  // TYPESCOUT_HOST_WINDOWS_QUIET_ERRORS_H
