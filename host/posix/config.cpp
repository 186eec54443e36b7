#include "host/config.h"

#include <cstdlib>
#include <new>
#include <string>

#include "host/posix/module_folder.h"
#include "host/posix/wide_path.h"

TvnPlatform::TvnStringT<wchar_t> TvnConfig::INIGetFiltersDir() {
  // secure_getenv: in a setuid program, the user who started it must not choose what it loads.
  if (const char* set = secure_getenv("TVN_FILTERS_DIR"); set != nullptr && *set != '\0') {
    return posix_host::WidePath(set);
  }
  const std::string& folder = posix_host::ModuleFolder();
  if (folder.empty()) return {};
  try {
    return posix_host::WidePath(folder + "filters");
  } catch (const std::bad_alloc&) {
    return {};
  }
}
