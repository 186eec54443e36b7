#include "host/windows/quiet_errors.h"

#include <windows.h>

namespace windows_host {

QuietErrors::QuietErrors()
    : changed_(SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &before_) != 0) {
}

QuietErrors::~QuietErrors() {
  if (changed_) SetThreadErrorMode(before_, nullptr);
}

}  // namespace windows_host
