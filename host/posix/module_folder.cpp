#include "host/posix/module_folder.h"

#include <dlfcn.h>
#include <link.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <cstdlib>

namespace posix_host {
// The folder part of the name under which the loader knows the module. That name may be relative
// to the folder that was current at loading, so it is made absolute then, once.
std::string FolderOf(const void* address) {
  std::array<char, PATH_MAX> buffer;
  Dl_info module = {};
  link_map* entry = nullptr;
  if (dladdr1(address, &module, reinterpret_cast<void**>(&entry), RTLD_DL_LINKMAP) == 0) return {};
  std::string path;
  if (entry == nullptr || entry->l_name == nullptr || *entry->l_name == '\0') {
    // The loader has no name for the program itself, which this code is part of.
    const ssize_t length = readlink("/proc/self/exe", buffer.data(), buffer.size());
    if (length > 0) path.assign(buffer.data(), static_cast<std::size_t>(length));
  } else if (*entry->l_name == '/') {
    path = entry->l_name;
  } else if (getcwd(buffer.data(), buffer.size()) != nullptr) {
    path = std::string(buffer.data()) + '/' + entry->l_name;
  }
  path.resize(path.rfind('/') + 1);
  // The same folder without symbolic links, so that a module there has the name by which the loader
  // knows it once it is loaded.
  if (realpath(path.c_str(), buffer.data()) != nullptr) path = buffer.data();
  if (!path.empty() && path.back() != '/') path += '/';
  return path;
}

namespace {

const std::string MODULE_FOLDER = FolderOf(reinterpret_cast<const void*>(&ModuleFolder));

}  // namespace

const std::string& ModuleFolder() { return MODULE_FOLDER; }

}  // namespace posix_host
