#include "cli/platform/system.h"

#include <windows.h>

#include <shellapi.h>

#include <array>

#include "cli/platform/folders.h"
#include "cli/platform/windows/handles.h"
#include "cli/utf8.h"

namespace typescout::cli::platform {
namespace {

std::wstring LibraryFolder() {
  // The assembler of mingw-w64 cannot take the address of a function of the library's.
  const HMODULE library = GetModuleHandleW(L"typescout.dll");
  if (library == nullptr) return {};
  std::wstring path(32'768, L'\0');
  path.resize(GetModuleFileNameW(library, path.data(), static_cast<DWORD>(path.size())));
  return path.substr(0, path.rfind(L'\\') + 1);
}

void HoldModule(const std::wstring& path) {
  DWORD before = 0;
  SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &before);
  LoadLibraryExW(path.c_str(), nullptr,
                 LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
  SetThreadErrorMode(before, nullptr);
}

}  // namespace

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

void HoldModules() {
  const std::wstring folder = LibraryFolder();
  if (folder.empty()) return;
  const std::string set = Environment("TVN_FILTERS_DIR");
  const std::string filters = set.empty() ? FromWide(folder + L"filters") : set;
  HoldModule(folder + L"DCRaw.dll");
  HoldModule(ToWide(JoinPath(filters, "TvnPDFImport.dll")));
}

}  // namespace typescout::cli::platform
