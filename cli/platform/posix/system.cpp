#include "cli/platform/system.h"

#include <stdlib.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstring>

namespace typescout::cli::platform {

std::string ErrorText(int error) { return std::strerror(error); }

std::vector<std::string> Arguments(int argc, char** argv) {
  return {argv + std::min(argc, 1), argv + argc};
}

std::string ListedPath(std::string bytes) { return bytes; }

std::string Environment(const char* name) {
  const char* value = getenv(name);
  return value == nullptr ? "" : value;
}

std::size_t RaiseOpenFileLimit() {
  constexpr rlim_t ENOUGH = 65'536;
  rlimit limit = {};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return 0;
  if (limit.rlim_cur < ENOUGH) {
    limit.rlim_cur = std::min(ENOUGH, limit.rlim_max);
    setrlimit(RLIMIT_NOFILE, &limit);
  }
  return limit.rlim_cur;
}

}  // namespace typescout::cli::platform
