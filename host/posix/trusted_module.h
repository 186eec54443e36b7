// Which modules may be loaded into this process.
#ifndef TYPESCOUT_HOST_POSIX_TRUSTED_MODULE_H
#define TYPESCOUT_HOST_POSIX_TRUSTED_MODULE_H

#include <string>

namespace posix_host {

// The path without symbolic links of the module at `path`, to be given to the loader; empty when
// there is no such module or it must not be loaded, and then `why`, when it is not null, gets the
// reason, in English. Refused are
//
// - a relative path, whose meaning depends on the current folder,
// - a '$' in the path, which the loader might expand ($ORIGIN, $LIB, $PLATFORM),
// - anything but a regular file (opening a pipe would block),
// - a file that users other than its owner may write to, or whose owner is neither root nor the
//   effective user; the same for the folder that holds it and for each folder above. A folder above
//   the module's own may be writable by all users when its sticky bit is set, as /tmp is: there
//   only the owner of a folder can replace it.
//
// May throw std::bad_alloc.
std::string TrustedModule(const char* path, const char** why = nullptr);

}  // namespace posix_host

#endif  // TYPESCOUT_HOST_POSIX_TRUSTED_MODULE_H
