#include "host/posix/trusted_module.h"

#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>

namespace posix_host {
namespace {

// Which folders other users may write to.
enum class Allow { NOBODY_ELSE, STICKY };

// Whether root or the effective user alone decides what is there.
bool IsOurs(const struct stat& status, Allow allow) {
  if (status.st_uid != 0 && status.st_uid != geteuid()) return false;
  if ((status.st_mode & (S_IWGRP | S_IWOTH)) == 0) return true;
  return allow == Allow::STICKY && (status.st_mode & S_ISVTX) != 0;
}

// The folder of the file at `path` and all folders above it.
bool AreOurFolders(std::string path) {
  Allow allow = Allow::NOBODY_ELSE;
  for (std::size_t slash = path.rfind('/'); slash != std::string::npos; slash = path.rfind('/')) {
    struct stat status;
    path.resize(slash);
    if (stat(slash == 0 ? "/" : path.c_str(), &status) != 0 || !IsOurs(status, allow)) return false;
    allow = Allow::STICKY;
  }
  return true;
}

}  // namespace

std::string TrustedModule(const char* path, const char** why) {
  const auto refuse = [why](const char* reason) {
    if (why != nullptr) *why = reason;
    return std::string();
  };
  if (*path != '/') return refuse("its path is not absolute");
  char resolved[PATH_MAX];
  struct stat status;
  if (realpath(path, resolved) == nullptr || stat(resolved, &status) != 0) {
    return refuse("it cannot be found");
  }
  std::string module(resolved);
  if (module.find('$') != std::string::npos) {
    return refuse("there is a '$' in its path, which the loader might expand");
  }
  if (!S_ISREG(status.st_mode)) return refuse("it is not a regular file");
  if (!IsOurs(status, Allow::NOBODY_ELSE) || !AreOurFolders(module)) {
    return refuse("other users may write to the file or to a folder above it");
  }
  return module;
}

}  // namespace posix_host
