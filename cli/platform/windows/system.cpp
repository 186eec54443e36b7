#include "cli/platform/system.h"

#include <windows.h>

#include <shellapi.h>

#include <array>
#include <limits>

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

std::string ListedPath(std::string bytes) {
  if (FromWide(ToWide(bytes)) == bytes) return bytes;
  const int size = static_cast<int>(bytes.size());
  const UINT encoding = GetConsoleOutputCP();
  std::wstring wide(bytes.size(), L'\0');
  const int length =
      MultiByteToWideChar(encoding, MB_ERR_INVALID_CHARS, bytes.data(), size, wide.data(), size);
  wide.resize(static_cast<std::size_t>(length));
  return length == 0 ? bytes : FromWide(wide);
}

std::string Environment(const char* name) {
  const std::wstring wideName = ToWide(name);
  std::wstring value(GetEnvironmentVariableW(wideName.c_str(), nullptr, 0), L'\0');
  value.resize(
      GetEnvironmentVariableW(wideName.c_str(), value.data(), static_cast<DWORD>(value.size())));
  return FromWide(value);
}

std::size_t RaiseOpenFileLimit() { return std::numeric_limits<std::size_t>::max(); }

}  // namespace typescout::cli::platform
