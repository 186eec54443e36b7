// The host suite's settings, of which one is read.
#ifndef TYPESCOUT_HOST_CONFIG_H
#define TYPESCOUT_HOST_CONFIG_H

#include "host/strings.h"

namespace TvnConfig {

// The folder of the suite's import filter modules: the value of the environment variable
// TVN_FILTERS_DIR, or the folder `filters` beside the typescout module when the variable is unset
// or empty. A setuid program ignores the variable. Empty when the folder cannot be found out or
// memory runs out. Read on every call. TvnLibrary refuses modules in it when it is relative.
TvnPlatform::TvnStringT<wchar_t> INIGetFiltersDir();

}  // namespace TvnConfig

#endif  // TYPESCOUT_HOST_CONFIG_H
