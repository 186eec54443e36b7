#include "host/library.h"

#include <dlfcn.h>
#include <link.h>

#include <new>
#include <string>

#include "host/posix/module_folder.h"
#include "host/posix/trusted_module.h"
#include "host/posix/wide_path.h"

struct TvnUtils::TvnLibrary::Module {
  TvnPlatform::TvnStringT<wchar_t> name;
  void* loaded = nullptr;
};

namespace {

// Where the module of this name would be; empty when no module can have that name.
std::string ModulePath(const wchar_t* name) {
  const posix_host::PathBytes bytes(name);
  if (bytes.get() == nullptr || *bytes.get() == '\0') return {};
  std::string path = bytes.get();
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) {
    if (posix_host::ModuleFolder().empty()) return {};
    path.insert(0, posix_host::ModuleFolder());
  }
  if (path.find('.', path.rfind('/')) == std::string::npos) path += ".so";
  return path;
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
    : module_(new (std::nothrow) Module) {
  if (module_ != nullptr) module_->name = TvnPlatform::TvnStringT<wchar_t>(name.View());
}

TvnUtils::TvnLibrary::~TvnLibrary() {
  if (IsLoaded() && Pin(module_->loaded)) Unload();  // else the reference keeps it in memory
  delete module_;
}

bool TvnUtils::TvnLibrary::Load() {
  if (module_ == nullptr || IsLoaded()) return IsLoaded();
  try {
    const std::string path = posix_host::TrustedModule(ModulePath(module_->name));
    if (path.empty()) return false;
    module_->loaded = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  } catch (const std::bad_alloc&) {
    return false;
  }
  return IsLoaded();
}

bool TvnUtils::TvnLibrary::IsLoaded() const {
  return module_ != nullptr && module_->loaded != nullptr;
}

void* TvnUtils::TvnLibrary::GetSymbol(const char* name) const {
  return IsLoaded() ? dlsym(module_->loaded, name) : nullptr;
}

bool TvnUtils::TvnLibrary::Unload() {
  if (!IsLoaded()) return false;
  dlclose(module_->loaded);
  module_->loaded = nullptr;
  return true;
}
