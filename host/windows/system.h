// Folders, settings and paths, as the system gives them. Every function here may throw
// std::bad_alloc and nothing else.
#ifndef TYPESCOUT_HOST_WINDOWS_SYSTEM_H
#define TYPESCOUT_HOST_WINDOWS_SYSTEM_H

#include <string>

namespace windows_host {

// The folder that holds the typescout module, or the program that it is linked into: an absolute
// path with a '\' at its end; empty when it cannot be found out.
std::wstring ModuleFolder();

// The folder of the system's own modules, in the same form.
std::wstring SystemFolder();

// The value of an environment variable; empty when it is not set.
std::wstring EnvironmentVariable(const wchar_t* name);

// Whether the path means the same file whatever the current folder and drive are, and no device:
// "X:\..." or "\\...", but not "\\.\...". '/' is the same as '\'. The path need not exist.
bool IsAbsolutePath(const std::wstring& path);

// The absolute path with '\' alone between its parts and without "." and ".."; empty when the
// system refuses it.
std::wstring NormalPath(const std::wstring& path);

}  // namespace windows_host

#endif  // TYPESCOUT_HOST_WINDOWS_SYSTEM_H
