#include "cli/platform/system.h"

#include <windows.h>

#include <shellapi.h>

#include <array>

#include "cli/platform/windows/handles.h"
#include "cli/utf8.h"

namespace typescout::cli::platform {
std::vector<std::string> Arguments(int, char**) {
  int count = 0;
  wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(FromWide(wide[i]));
  LocalFree(wide);
  return arguments;
}

std::string ErrorText(int error) {
  std::array<wchar_t, 512> text;
  const DWORD length = FormatMessageW(
      FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK,
      nullptr, static_cast<DWORD>(error), 0, text.data(), static_cast<DWORD>(text.size()), nullptr);
  std::string message = FromWide({text.data(), length});
  while (!message.empty() && (message.back() == ' ' || message.back() == '.')) message.pop_back();
  return message.empty() ? "error " + std::to_string(error) : message;
}

std::string Environment(const char* name) {
  const std::wstring wideName = ToWide(name);
  std::wstring value(GetEnvironmentVariableW(wideName.c_str(), nullptr, 0), L'\0');
  value.resize(
      GetEnvironmentVariableW(wideName.c_str(), value.data(), static_cast<DWORD>(value.size())));
  return FromWide(value);
}

void RaiseOpenFileLimit() {}

}  // namespace typescout::cli::platform
