// Keeps the system's message boxes away.
#ifndef TYPESCOUT_HOST_WINDOWS_QUIET_ERRORS_H
#define TYPESCOUT_HOST_WINDOWS_QUIET_ERRORS_H

namespace windows_host {

// While it lives, a drive without a disk or a damaged module is an error code on this thread, not a
// question to the user that would block the call.
class QuietErrors {
 public:
  QuietErrors();
  QuietErrors(const QuietErrors&) = delete;
  QuietErrors& operator=(const QuietErrors&) = delete;
  ~QuietErrors();

 private:
  unsigned long before_ = 0;
  bool changed_ = false;
};

}  // namespace windows_host

#endif  // TYPESCOUT_HOST_WINDOWS_QUIET_ERRORS_H
