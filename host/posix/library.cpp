#include "host/library.h"

#include <dlfcn.h>
#include <link.h>

#include <array>
#include <climits>
#include <cstring>
#include <new>
#include <string>
#include <string_view>

#include "host/posix/module_folder.h"
#include "host/posix/trusted_module.h"
#include "host/posix/wide_path.h"

namespace {

// The place of a module in the file system, on the stack: usually no module is there, and a scan
// should not take memory to find that out.
class ModulePath {
 public:
  // Where the module of this name would be.
  explicit ModulePath(const wchar_t* name) {
    bytes_.front() = '\0';
    const posix_host::PathBytes bytes(name);
    if (bytes.get() == nullptr || *bytes.get() == '\0') return;
    const std::string_view given = bytes.get();
    const std::size_t slash = given.rfind('/');
    const bool isBare = slash == std::string_view::npos;
    const bool hasExtension = given.find('.', isBare ? 0 : slash) != std::string_view::npos;
    const std::string_view folder = isBare ? posix_host::ModuleFolder() : std::string_view();
    const std::string_view extension = hasExtension ? "" : ".so";
    if (isBare && folder.empty()) return;
    if (folder.size() + given.size() + extension.size() >= bytes_.size()) return;
    char* end = bytes_.data();
    for (const std::string_view part : {folder, given, extension}) {
      end += part.copy(end, part.size());
    }
    *end = '\0';
  }

  // Empty when no module can have the name.
  const char* get() const { return bytes_.data(); }

 private:
  std::array<char, PATH_MAX> bytes_;
};

// Whether the process has loaded the module by this path already, as programs do that ask about
// many files. What the file is now makes no difference then.
bool IsHeld(const char* path) {
  const auto hasPath = [](dl_phdr_info* module, std::size_t /*size*/, void* sought) {
    return std::strcmp(module->dlpi_name, static_cast<const char*>(sought)) == 0 ? 1 : 0;
  };
  return *path != '\0' && dl_iterate_phdr(hasPath, const_cast<char*>(path)) != 0;
}

// Keeps a loaded module in memory until the process ends. False when memory runs out.
bool Pin(void* loaded) {
  link_map* entry = nullptr;
  if (dlinfo(loaded, RTLD_DI_LINKMAP, &entry) != 0) return false;
  void* const again = dlopen(entry->l_name, RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE);
  return again != nullptr && dlclose(again) == 0;
}

}  // namespace

TvnUtils::TvnLibrary::TvnLibrary(const TvnPlatform::TvnStringT<wchar_t>& name)
    : name_(name.View()) {}

TvnUtils::TvnLibrary::~TvnLibrary() {
  if (IsLoaded() && Pin(loaded_)) Unload();  // else the reference keeps it in memory
}

bool TvnUtils::TvnLibrary::Load() {
  if (IsLoaded()) return true;
  constexpr int FLAGS = RTLD_NOW | RTLD_LOCAL;
  const ModulePath path(name_);
  if (IsHeld(path.get())) loaded_ = dlopen(path.get(), FLAGS | RTLD_NOLOAD);
  if (IsLoaded()) return true;
  try {
    const std::string trusted = posix_host::TrustedModule(path.get());
    if (trusted.empty()) return false;
    loaded_ = dlopen(trusted.c_str(), FLAGS);
  } catch (const std::bad_alloc&) {
    return false;
  }
  return IsLoaded();
}

bool TvnUtils::TvnLibrary::IsLoaded() const { return loaded_ != nullptr; }

void* TvnUtils::TvnLibrary::GetSymbol(const char* name) const {
  return IsLoaded() ? dlsym(loaded_, name) : nullptr;
}

bool TvnUtils::TvnLibrary::Unload() {
  if (!IsLoaded()) return false;
  dlclose(loaded_);
  loaded_ = nullptr;
  return true;
}
