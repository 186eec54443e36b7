// What the system is asked for in text: folders, settings, paths. Everything here may throw
// std::bad_alloc and nothing else.
#ifndef TYPESCOUT_HOST_WINDOWS_SYSTEM_H
#define TYPESCOUT_HOST_WINDOWS_SYSTEM_H

#include <string>

namespace windows_host {

// The folder that holds the typescout module, or the program that it is linked into: an absolute
// path with a '\' at its end; empty when it cannot be told.
std::wstring ModuleFolder();

// The folder of the system's own modules, in the same form.
std::wstring SystemFolder();

// The value of an environment variable; empty when it is not set.
std::wstring EnvironmentVariable(const wchar_t* name);

// The absolute form of a path, which need not exist; empty when it has none.
std::wstring AbsolutePath(const std::wstring& path);

}  // namespace windows_host

#endif  // TYPESCOUT_HOST_WINDOWS_SYSTEM_H
