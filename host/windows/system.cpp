#include "host/windows/system.h"

#include <windows.h>

namespace windows_host {
namespace {

// What `fill(buffer, capacity)` answers, in a buffer that grows until it fits. The system's
// functions give the length that they wrote, without the terminator, 0 when they fail, and the
// capacity or more when there was too little room.
template <typename Fill>
std::wstring Ask(const Fill& fill) {
  constexpr std::size_t LONGEST = 0x8000;  // no path and no variable of the system's is longer
  for (std::size_t capacity = MAX_PATH; capacity <= 2 * LONGEST; capacity *= 2) {
    std::wstring text(capacity, L'\0');
    const std::size_t length = fill(text.data(), static_cast<DWORD>(capacity));
    if (length < capacity) {
      text.resize(length);
      return text;
    }
  }
  return {};
}

}  // namespace

std::wstring ModuleFolder() {
  HMODULE module = nullptr;
  constexpr DWORD BY_ADDRESS =
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  if (GetModuleHandleExW(BY_ADDRESS, reinterpret_cast<LPCWSTR>(&ModuleFolder), &module) == 0) {
    return {};
  }
  const std::wstring path = Ask([module](wchar_t* buffer, DWORD capacity) {
    return GetModuleFileNameW(module, buffer, capacity);
  });
  return path.substr(0, path.rfind(L'\\') + 1);
}

std::wstring SystemFolder() {
  const std::wstring folder = Ask(GetSystemDirectoryW);
  return folder.empty() ? folder : folder + L'\\';
}

std::wstring EnvironmentVariable(const wchar_t* name) {
  return Ask([name](wchar_t* buffer, DWORD capacity) {
    return GetEnvironmentVariableW(name, buffer, capacity);
  });
}

bool IsAbsolutePath(const std::wstring& path) {
  const auto isSeparator = [&path](std::size_t at) {
    return at < path.size() && (path[at] == L'/' || path[at] == L'\\');
  };
  if (isSeparator(0)) return isSeparator(1) && path.size() > 2 && path[2] != L'.';
  return path.size() > 2 && path[1] == L':' && isSeparator(2);
}

std::wstring NormalPath(const std::wstring& path) {
  return Ask([&path](wchar_t* buffer, DWORD capacity) {
    return GetFullPathNameW(path.c_str(), capacity, buffer, nullptr);
  });
}

}  // namespace windows_host
