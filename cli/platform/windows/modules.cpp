#include "cli/platform/modules.h"

#include <windows.h>

#include "cli/platform/folders.h"
#include "cli/platform/system.h"
#include "cli/utf8.h"
#include "core/suite_modules.h"

namespace typescout::cli::platform {
namespace {

std::wstring LibraryFolder() {
  // The assembler of mingw-w64 cannot take the address of a function of the library's.
  const HMODULE library = GetModuleHandleW(L"typescout.dll");
  if (library == nullptr) return {};
  std::wstring path(32'768, L'\0');
  path.resize(GetModuleFileNameW(library, path.data(), static_cast<DWORD>(path.size())));
  return path.substr(0, path.rfind(L'\\') + 1);
}

Module Hold(const std::string& folder, const SuiteModule& wanted) {
  Module module;
  const std::string name = FromWide(wanted.name);
  module.path = folder.empty() ? name : JoinPath(folder, name) + ".dll";
  DWORD before = 0;
  SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &before);
  const HMODULE loaded =
      LoadLibraryExW(ToWide(module.path).c_str(), nullptr,
                     LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
  const DWORD error = GetLastError();
  SetThreadErrorMode(before, nullptr);
  if (loaded == nullptr) {
    module.error = ErrorText(static_cast<int>(error));
  } else if (GetProcAddress(loaded, wanted.function) == nullptr) {
    module.error = std::string("has no function ") + wanted.function;
  } else if (const FARPROC version = GetProcAddress(loaded, "TypeScoutModuleVersion")) {
    module.version = reinterpret_cast<const char* (*)()>(reinterpret_cast<void*>(version))();
  }
  return module;
}

}  // namespace

std::vector<Module> HoldModules() {
  const std::string folder = FromWide(LibraryFolder());
  const std::string set = Environment("TVN_FILTERS_DIR");
  const std::string filters = set.empty() && !folder.empty() ? JoinPath(folder, "filters") : set;
  return {Hold(folder, CAMERA_RAW_MODULE), Hold(filters, PDF_MODULE)};
}

}  // namespace typescout::cli::platform
