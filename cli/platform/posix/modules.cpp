#include "cli/platform/modules.h"

#include <dlfcn.h>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>

#include "cli/platform/folders.h"
#include "cli/platform/system.h"
#include "cli/utf8.h"
#include "core/suite_modules.h"
#include "host/posix/module_folder.h"
#include "host/posix/trusted_module.h"
#include "typescout/typescout.h"

namespace typescout::cli::platform {
namespace {

// What tells a program's processor from others: class, byte order and machine (System V ABI,
// chapter 4). Empty when the file is no program.
std::string ProcessorOf(const std::string& path) {
  constexpr std::size_t END_OF_MACHINE = 20;
  std::string head(END_OF_MACHINE, '\0');
  const bool isRead = TryToRead({nullptr, path}, &head) == 0 && head.size() == END_OF_MACHINE;
  return isRead && head.starts_with("\177ELF") ? head.substr(4, 2) + head.substr(18) : "";
}

Module Hold(const std::string& folder, const SuiteModule& wanted) {
  Module module;
  const char* why = nullptr;
  module.path = folder + FromWide(wanted.name);
  if (folder.empty()) {
    module.error = "its folder is not an absolute path";
  } else if (access((module.path += ".so").c_str(), F_OK) != 0) {
    module.error = ErrorText(errno);
  } else if (const std::string path = posix_host::TrustedModule(module.path.c_str(), &why);
             path.empty()) {
    module.error = std::string("refused: ") + why;
  } else if (void* const loaded = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL); loaded == nullptr) {
    module.error = dlerror();
    // Of such a file the loader says that it does not exist.
    const std::string processor = ProcessorOf(path);
    if (!processor.empty() && processor != ProcessorOf("/proc/self/exe")) {
      module.error += " (built for another processor)";
    }
  } else if (dlsym(loaded, wanted.function) == nullptr) {
    module.error = std::string("has no function ") + wanted.function;
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
  return {Hold(folder, CAMERA_RAW_MODULE), Hold(filters, PDF_MODULE)};
}

}  // namespace typescout::cli::platform
