#include "host/config.h"

#include <new>
#include <string>

#include "host/windows/system.h"

TvnPlatform::TvnStringT<wchar_t> TvnConfig::INIGetFiltersDir() {
  try {
    std::wstring folder = windows_host::EnvironmentVariable(L"TVN_FILTERS_DIR");
    if (folder.empty()) {
      folder = windows_host::ModuleFolder();
      if (!folder.empty()) folder += L"filters";
    }
    return TvnPlatform::TvnStringT<wchar_t>(std::wstring_view(folder));
  } catch (const std::bad_alloc&) {
    return {};
  }
}
