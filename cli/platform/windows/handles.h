// The system's handles, paths and errors, for the files of this folder.
#ifndef TYPESCOUT_CLI_PLATFORM_WINDOWS_HANDLES_H
#define TYPESCOUT_CLI_PLATFORM_WINDOWS_HANDLES_H

#include <windows.h>

#include <cstdint>
#include <string>

namespace typescout::cli::platform {

inline int LastError() { return static_cast<int>(GetLastError()); }

inline HANDLE ToHandle(std::intptr_t handle) { return reinterpret_cast<HANDLE>(handle); }

// The path as the system takes it: absolute and marked as such when it is long.
std::wstring SystemPath(const std::string& path);

// How many writes to standard streams have begun and ended so far: odd during one.
std::uint64_t WriteSteps();

// INVALID_HANDLE_VALUE when it does not open. `flags` are added to those that folders need.
HANDLE OpenPath(const std::string& path, DWORD access, DWORD flags);

}  // namespace typescout::cli::platform

#endif  // TYPESCOUT_CLI_PLATFORM_WINDOWS_HANDLES_H
