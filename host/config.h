// The host suite's settings, of which one is read.
#ifndef TYPESCOUT_HOST_CONFIG_H
#define TYPESCOUT_HOST_CONFIG_H

#include "host/strings.h"

namespace TvnConfig {

// The folder of the suite's import filter modules: the environment's TVN_FILTERS_DIR (not in a
// program that runs with another user's rights), else the folder `filters` beside the typescout
// module; empty when neither can be told. Read afresh on every call.
TvnPlatform::TvnStringT<wchar_t> INIGetFiltersDir();

}  // namespace TvnConfig

#endif  // TYPESCOUT_HOST_CONFIG_H
