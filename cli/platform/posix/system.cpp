#include "cli/platform/system.h"

#include <dlfcn.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

#include "cli/platform/folders.h"
#include "typescout/typescout.h"

namespace typescout::cli::platform {
namespace {

// Where the library itself was loaded from, with a slash at the end.
std::string LibraryFolder() {
  Dl_info info = {};
  if (dladdr(reinterpret_cast<const void*>(&GetNumTypeScoutProcs), &info) == 0) return {};
  const std::string path = info.dli_fname == nullptr ? "" : info.dli_fname;
  return path.substr(0, path.rfind('/') + 1);
}

void HoldModule(const std::string& path) {
  if (access(path.c_str(), R_OK) == 0) dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
}

}  // namespace

std::string ErrorText(int error) { return std::strerror(error); }

std::vector<std::string> Arguments(int argc, char** argv) {
  return {argv + std::min(argc, 1), argv + argc};
}

std::string Environment(const char* name) {
  const char* value = getenv(name);
  return value == nullptr ? "" : value;
}

void RaiseOpenFileLimit() {
  constexpr rlim_t ENOUGH = 65'536;
  rlimit limit = {};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= ENOUGH) return;
  limit.rlim_cur = std::min(ENOUGH, limit.rlim_max);
  setrlimit(RLIMIT_NOFILE, &limit);
}

void HoldModules() {
  const std::string folder = LibraryFolder();
  if (folder.empty()) return;
  const char* set = secure_getenv("TVN_FILTERS_DIR");
  const std::string filters = set != nullptr && *set != '\0' ? set : folder + "filters";
  HoldModule(folder + "DCRaw.so");
  HoldModule(JoinPath(filters, "TvnPDFImport.so"));
}

}  // namespace typescout::cli::platform
