// The modules of the suite that the library asks.
#ifndef TYPESCOUT_CLI_PLATFORM_MODULES_H
#define TYPESCOUT_CLI_PLATFORM_MODULES_H

#include <string>
#include <vector>

namespace typescout::cli::platform {

struct Module {
  std::string path;     // where the library looks for it; its bare name when it looks nowhere
  std::string version;  // as the module reports it; empty when it does not
  std::string error;    // why the library cannot use it; empty when it can
};

// Loads the modules as the library does and keeps them until the program ends: for many files that
// is much faster than to load them for each. A module that cannot be loaded is only reported, since
// the library works without it too.
std::vector<Module> HoldModules();

}  // namespace typescout::cli::platform

#endif  // TYPESCOUT_CLI_PLATFORM_MODULES_H
