#include "cli/ask/modules.h"

#include "cli/platform/modules.h"

namespace typescout::cli {

std::string ModuleList() {
  std::string list;
  for (const platform::Module& module : platform::HoldModules()) {
    const std::string version = module.version.empty() ? "unknown" : module.version;
    list += module.path + ": ";
    list += module.error.empty() ? "version " + version : "not used: " + module.error;
    list += '\n';
  }
  return list;
}

}  // namespace typescout::cli
