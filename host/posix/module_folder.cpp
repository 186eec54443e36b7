#include "host/posix/module_folder.h"

#include <link.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <cstdint>
#include <cstdlib>

namespace posix_host {
namespace {

// A module that the loader has loaded, sought by an address in it.
struct Search {
  std::uintptr_t address;
  std::string name;
};

// Called for each module. Ends the search when the address lies in this one.
int CompareModule(dl_phdr_info* module, std::size_t /*size*/, void* context) {
  auto* const search = static_cast<Search*>(context);
  for (ElfW(Half) i = 0; i < module->dlpi_phnum; ++i) {
    const ElfW(Phdr)& segment = module->dlpi_phdr[i];
    const std::uintptr_t start = module->dlpi_addr + segment.p_vaddr;
    if (segment.p_type != PT_LOAD || search->address - start >= segment.p_memsz) continue;
    search->name = module->dlpi_name;
    return 1;
  }
  return 0;
}

}  // namespace

// The folder part of the name under which the loader knows the module. That name may be relative
// to the folder that was current at loading, so it is made absolute then, once.
std::string FolderOf(const void* address) {
  std::array<char, PATH_MAX> buffer;
  Search search = {reinterpret_cast<std::uintptr_t>(address), {}};
  if (dl_iterate_phdr(CompareModule, &search) == 0) return {};
  std::string path;
  if (search.name.empty()) {
    // The loader has no name for the program itself, which this code is part of.
    const ssize_t length = readlink("/proc/self/exe", buffer.data(), buffer.size());
    if (length > 0) path.assign(buffer.data(), static_cast<std::size_t>(length));
  } else if (search.name.front() == '/') {
    path = search.name;
  } else if (getcwd(buffer.data(), buffer.size()) != nullptr) {
    path = std::string(buffer.data()) + '/' + search.name;
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
