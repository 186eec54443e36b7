#include "host/library.h"

#include <windows.h>

#include <new>
#include <string>

#include "host/windows/quiet_errors.h"
#include "host/windows/system.h"

namespace {

// Loads the module at an absolute path, when there is a file. What the module needs in turn may lie
// beside it, beside the program or in the system folder, but not in the current folder or along
// PATH.
HMODULE LoadAt(const std::wstring& path) {
  const windows_host::QuietErrors quiet;
  // Usually there is no such module, and this is far cheaper than LoadLibraryEx().
  constexpr DWORD NO_FILE = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE;
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & NO_FILE) != 0) return nullptr;
  return LoadLibraryExW(path.c_str(), nullptr,
                        LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
}

// The loader is given absolute paths only: a bare name would also find a module of that name which
// the program has loaded from anywhere, and a relative path depends on the current folder.
HMODULE LoadNamed(std::wstring name) {
  if (name.empty()) return nullptr;
  const std::size_t separator = name.find_last_of(L"/\\:");
  const bool isBare = separator == std::wstring::npos;
  if (name.find(L'.', isBare ? 0 : separator + 1) == std::wstring::npos) name += L".dll";
  if (!isBare) {
    if (!windows_host::IsAbsolutePath(name)) return nullptr;
    const std::wstring path = windows_host::NormalPath(name);
    return path.empty() ? nullptr : LoadAt(path);
  }
  for (const auto& folder : {windows_host::ModuleFolder(), windows_host::SystemFolder()}) {
    if (folder.empty()) continue;
    if (const HMODULE module = LoadAt(folder + name); module != nullptr) return module;
  }
  return nullptr;
}

}  // namespace

TvnUtils::TvnLibrary::TvnLibrary(const TvnPlatform::TvnStringT<wchar_t>& name)
    : name_(name.View()) {}

// A module that is still loaded keeps its reference, and so stays in memory.
TvnUtils::TvnLibrary::~TvnLibrary() = default;

bool TvnUtils::TvnLibrary::Load() {
  if (IsLoaded()) return true;
  try {
    loaded_ = LoadNamed(std::wstring(name_.View()));
  } catch (const std::bad_alloc&) {
    return false;
  }
  return IsLoaded();
}

bool TvnUtils::TvnLibrary::IsLoaded() const { return loaded_ != nullptr; }

void* TvnUtils::TvnLibrary::GetSymbol(const char* name) const {
  if (!IsLoaded()) return nullptr;
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(loaded_), name));
}

bool TvnUtils::TvnLibrary::Unload() {
  if (!IsLoaded()) return false;
  FreeLibrary(static_cast<HMODULE>(loaded_));
  loaded_ = nullptr;
  return true;
}
