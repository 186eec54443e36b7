// Where the typescout module lies.
#ifndef TYPESCOUT_HOST_POSIX_MODULE_FOLDER_H
#define TYPESCOUT_HOST_POSIX_MODULE_FOLDER_H

#include <string>

namespace posix_host {

// The absolute path of the folder that holds the typescout module (or the program that it is linked
// into), without symbolic links and with a '/' at its end; empty when it cannot be found out.
const std::string& ModuleFolder();

// The same for the module or program that contains `address`.
std::string FolderOf(const void* address);

}  // namespace posix_host

#endif  // TYPESCOUT_HOST_POSIX_MODULE_FOLDER_H
