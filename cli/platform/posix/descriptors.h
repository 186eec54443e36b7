// File descriptors as paths, where the system has such a thing.
#ifndef TYPESCOUT_CLI_PLATFORM_POSIX_DESCRIPTORS_H
#define TYPESCOUT_CLI_PLATFORM_POSIX_DESCRIPTORS_H

#include <unistd.h>

#include <string>

namespace typescout::cli::platform {

inline std::string DescriptorPath(int descriptor) {
  return "/proc/self/fd/" + std::to_string(descriptor);
}

inline bool HasDescriptorFolder() {
  static const bool has = access("/proc/self/fd", X_OK) == 0;
  return has;
}

}  // namespace typescout::cli::platform

#endif  // TYPESCOUT_CLI_PLATFORM_POSIX_DESCRIPTORS_H
