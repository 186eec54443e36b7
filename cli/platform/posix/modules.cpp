#include "cli/platform/modules.h"

#include <dlfcn.h>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>

#include "cli/platform/system.h"
#include "host/posix/module_folder.h"
#include "host/posix/trusted_module.h"
#include "typescout/typescout.h"

namespace typescout::cli::platform {
namespace {

Module Hold(const std::string& folder, const std::string& name, const char* function) {
  Module module;
  module.path = folder + name;
  if (folder.empty()) {
    module.error = "its folder is not an absolute path";
  } else if (access((module.path += ".so").c_str(), F_OK) != 0) {
    module.error = ErrorText(errno);
  } else if (const std::string path = posix_host::TrustedModule(module.path.c_str()); path.empty()) {
    module.error = "refused, since other users may write to the file or to a folder above it";
  } else if (void* const loaded = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL); loaded == nullptr) {
    module.error = dlerror();
  } else if (dlsym(loaded, function) == nullptr) {
    module.error = std::string("has no function ") + function;
  } else if (void* const version = dlsym(loaded, "TypeScoutModuleVersion"); version != nullptr) {
    module.version = reinterpret_cast<const char* (*)()>(version)();
  }
  return module;
}

}  // namespace

std::vector<Module> HoldModules() {
  const std::string folder =
      posix_host::FolderOf(reinterpret_cast<const void*>(&GetNumTypeScoutProcs));
  std::string filters = folder.empty() ? folder : folder + "filters/";
  if (const char* set = secure_getenv("TVN_FILTERS_DIR"); set != nullptr && *set != '\0') {
    filters = *set == '/' ? set + std::string("/") : "";
  }
  return {Hold(folder, "DCRaw", "CheckForRaw"), Hold(filters, "TvnPDFImport", "GetAINativeData")};
}

}  // namespace typescout::cli::platform
