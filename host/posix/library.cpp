#include "host/library.h"

#include <dlfcn.h>
#include <link.h>
#include <pthread.h>
#include <sys/stat.h>

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

// Only one thread at a time uses the loader here, and fork() waits for it. Otherwise the new
// process could inherit the loader in the middle of its work, and each further use would fail or
// block. Recursive, since a module's initialisation may call fork() or this library.
class LoaderLock {
 public:
  LoaderLock() { Lock(); }
  LoaderLock(const LoaderLock&) = delete;
  LoaderLock& operator=(const LoaderLock&) = delete;
  ~LoaderLock() { Unlock(); }

  // Makes fork() wait for the lock. When memory runs out, fork() does not wait.
  static int Register() {
    Renew();
    return pthread_atfork(Lock, Unlock, Renew);
  }

 private:
  static void Lock() { pthread_mutex_lock(&mutex); }
  static void Unlock() { pthread_mutex_unlock(&mutex); }
  // In the new process the thread has another number, so it cannot unlock the mutex.
  static void Renew() {
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(&mutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
  }

  static inline pthread_mutex_t mutex;
};

[[maybe_unused]] const int REGISTERED = LoaderLock::Register();

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

bool IsRegularFile(const char* path) {
  struct stat status;
  return stat(path, &status) == 0 && S_ISREG(status.st_mode);
}

// Whether the process has loaded the module by this path already, as programs do that ask about
// many files. It need not be checked again then.
bool IsHeld(const char* path) {
  const auto hasPath = [](dl_phdr_info* module, std::size_t /*size*/, void* sought) {
    return std::strcmp(module->dlpi_name, static_cast<const char*>(sought)) == 0 ? 1 : 0;
  };
  return dl_iterate_phdr(hasPath, const_cast<char*>(path)) != 0;
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
  if (!IsLoaded()) return;
  const LoaderLock lock;
  if (Pin(loaded_)) Unload();  // else the reference keeps it in memory
}

bool TvnUtils::TvnLibrary::Load() {
  if (IsLoaded()) return true;
  constexpr int FLAGS = RTLD_NOW | RTLD_LOCAL;
  const ModulePath path(name_);
  // Usually there is no such module. Then nothing may be asked of the loader: its lock would hold
  // up other threads, and a process that fork() made while another thread held it would wait for
  // ever.
  if (!IsRegularFile(path.get())) return false;
  const LoaderLock lock;
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
  if (!IsLoaded()) return nullptr;
  const LoaderLock lock;
  return dlsym(loaded_, name);
}

bool TvnUtils::TvnLibrary::Unload() {
  if (!IsLoaded()) return false;
  const LoaderLock lock;
  dlclose(loaded_);
  loaded_ = nullptr;
  return true;
}
