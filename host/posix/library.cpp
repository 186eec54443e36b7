#include "host/library.h"

#include <dlfcn.h>
#include <link.h>
#include <pthread.h>
#include <sys/stat.h>

#include <array>
#include <atomic>
#include <chrono>
#include <climits>
#include <cstring>
#include <mutex>
#include <new>
#include <string>
#include <string_view>
#include <thread>

#include "host/posix/module_folder.h"
#include "host/posix/trusted_module.h"
#include "host/posix/wide_path.h"

namespace {

// Stands for one use of the loader. fork() waits until no use is under way, and none begins
// meanwhile. Otherwise the new process could inherit the loader in the middle of its work, and each
// further use would fail or block.
//
// Uses do not wait for each other, and fork() waits for them a second at most: a library that is
// being initialised may call fork(), by a thread that holds the loader's own lock.
class LoaderUse {
 public:
  LoaderUse() {
    const std::lock_guard<std::mutex> lock(mutex);
    ++uses;
  }
  LoaderUse(const LoaderUse&) = delete;
  LoaderUse& operator=(const LoaderUse&) = delete;
  ~LoaderUse() { --uses; }

  // Makes fork() wait. When memory runs out, fork() does not wait.
  static int Register() { return pthread_atfork(BeforeFork, AfterFork, InChild); }

 private:
  static void BeforeFork() {
    using Clock = std::chrono::steady_clock;
    mutex.lock();
    const Clock::time_point end = Clock::now() + std::chrono::seconds(1);
    while (uses > 0 && Clock::now() < end)
      std::this_thread::sleep_for(std::chrono::microseconds(100));
  }
  static void AfterFork() { mutex.unlock(); }
  // The other threads do not exist in the new process.
  static void InChild() {
    uses = 0;
    mutex.unlock();
  }

  static inline std::mutex mutex;  // held while a use begins and while a process is forked
  static inline std::atomic<int> uses;
};

[[maybe_unused]] const int REGISTERED = LoaderUse::Register();

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
  const LoaderUse use;
  if (Pin(loaded_)) Unload();  // else the reference keeps it in memory
}

bool TvnUtils::TvnLibrary::Load() {
  if (IsLoaded()) return true;
  constexpr int FLAGS = RTLD_NOW | RTLD_LOCAL;
  const ModulePath path(name_);
  // Usually there is no such module, and the loader takes much longer to find that out.
  if (!IsRegularFile(path.get())) return false;
  const LoaderUse use;
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
  const LoaderUse use;
  return dlsym(loaded_, name);
}

bool TvnUtils::TvnLibrary::Unload() {
  if (!IsLoaded()) return false;
  const LoaderUse use;
  dlclose(loaded_);
  loaded_ = nullptr;
  return true;
}
