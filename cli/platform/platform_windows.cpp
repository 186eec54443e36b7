// On Windows paths are UTF-8 in here; a half of a surrogate pair, which names may hold alone, is
// encoded like any other character.
#include "cli/platform/platform.h"

#include <windows.h>

#include <shellapi.h>
#include <shlwapi.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <utility>

#include "cli/output/names.h"

namespace typescout::cli::platform {
namespace {

std::string FromWide(std::wstring_view wide) {
  std::string bytes;
  for (std::size_t i = 0; i < wide.size(); ++i) {
    char32_t value = wide[i];
    const bool isPair = value >= 0xD800 && value < 0xDC00 && i + 1 < wide.size() &&
                        wide[i + 1] >= 0xDC00 && wide[i + 1] < 0xE000;
    if (isPair) value = 0x10000 + ((value - 0xD800) << 10) + (wide[++i] - 0xDC00u);
    const auto put = [&bytes](char32_t byte) { bytes += static_cast<char>(byte); };
    const auto tail = [value](int shift) { return 0x80 | (value >> shift & 0x3F); };
    if (value < 0x80) {
      put(value);
      continue;
    }
    if (value < 0x800) {
      put(0xC0 | value >> 6);
    } else {
      if (value < 0x10000) {
        put(0xE0 | value >> 12);
      } else {
        put(0xF0 | value >> 18);
        put(tail(12));
      }
      put(tail(6));
    }
    put(tail(0));
  }
  return bytes;
}

// As the system takes it: absolute and marked as such when it is long.
std::wstring SystemPath(const std::string& path) {
  constexpr std::size_t SHORT = 240;
  const std::wstring wide = ToWide(path);
  if (wide.size() < SHORT || wide.starts_with(L"\\\\?\\")) return wide;
  std::wstring full(GetFullPathNameW(wide.c_str(), 0, nullptr, nullptr), L'\0');
  full.resize(
      GetFullPathNameW(wide.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
  if (full.empty()) return wide;
  return full.starts_with(L"\\\\") ? L"\\\\?\\UNC" + full.substr(1) : L"\\\\?\\" + full;
}

std::string PathOf(const Place& place) {
  return place.folder == nullptr ? place.name : JoinPath(place.folder->path(), place.name);
}

int LastError() { return static_cast<int>(GetLastError()); }

Status Failed(int error) {
  Status status;
  status.error = error;
  return status;
}

class Handle {
 public:
  explicit Handle(HANDLE handle) : handle_(handle) {}
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  ~Handle() {
    if (IsOpen()) ::CloseHandle(handle_);
  }
  bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
  HANDLE get() const { return handle_; }

 private:
  HANDLE handle_;
};

HANDLE OpenPath(const std::string& path, DWORD access, DWORD flags) {
  return CreateFileW(SystemPath(path).c_str(), access,
                     FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                     FILE_FLAG_BACKUP_SEMANTICS | flags, nullptr);
}

bool IsLinkTag(DWORD tag) {
  return tag == IO_REPARSE_TAG_SYMLINK || tag == IO_REPARSE_TAG_MOUNT_POINT;
}

Kind KindOf(DWORD attributes, DWORD tag) {
  if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 && IsLinkTag(tag)) return Kind::LINK;
  return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? Kind::FOLDER : Kind::FILE;
}

HANDLE StandardHandle(Stream stream) {
  constexpr std::array<DWORD, 3> NUMBERS = {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE};
  return GetStdHandle(NUMBERS[static_cast<std::size_t>(stream)]);
}

HANDLE ToHandle(std::intptr_t handle) { return reinterpret_cast<HANDLE>(handle); }

std::atomic<bool> isInterrupted = false;
HANDLE mainThread = nullptr;

BOOL WINAPI OnInterrupt(DWORD) {
  if (isInterrupted.exchange(true)) return FALSE;
  CancelSynchronousIo(mainThread);
  return TRUE;
}

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

bool IsConsole(HANDLE handle) {
  DWORD mode = 0;
  return GetConsoleMode(handle, &mode) != 0;
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

Folder::Folder(std::intptr_t handle, std::string path) : handle_(handle), path_(std::move(path)) {}

Folder::~Folder() = default;

std::vector<std::string> Folder::ShortPaths() const {
  const std::wstring path = SystemPath(path_);
  std::wstring brief(GetShortPathNameW(path.c_str(), nullptr, 0), L'\0');
  brief.resize(GetShortPathNameW(path.c_str(), brief.data(), static_cast<DWORD>(brief.size())));
  if (brief.empty()) return {};
  return {JoinPath(FromWide(brief), "")};
}

Status StatusOf(const Place& place, bool followLink) {
  const Handle file(
      OpenPath(PathOf(place), FILE_READ_ATTRIBUTES, followLink ? 0 : FILE_FLAG_OPEN_REPARSE_POINT));
  if (!file.IsOpen()) return Failed(LastError());
  Status status;
  switch (GetFileType(file.get())) {
    case FILE_TYPE_CHAR:
      status.kind = Kind::CHARACTER_DEVICE;
      return status;
    case FILE_TYPE_PIPE:
      status.kind = Kind::FIFO;
      return status;
    default:
      break;
  }
  BY_HANDLE_FILE_INFORMATION info = {};
  if (GetFileInformationByHandle(file.get(), &info) == 0) return Failed(LastError());
  FILE_ATTRIBUTE_TAG_INFO tag = {};
  GetFileInformationByHandleEx(file.get(), FileAttributeTagInfo, &tag, sizeof tag);
  status.kind = KindOf(info.dwFileAttributes, tag.ReparseTag);
  status.device = info.dwVolumeSerialNumber;
  status.serial = std::uint64_t{info.nFileIndexHigh} << 32 | info.nFileIndexLow;
  status.size = std::uint64_t{info.nFileSizeHigh} << 32 | info.nFileSizeLow;
  return status;
}

FolderPtr OpenFolder(const Place& place, bool, int*) {
  // Nothing is held open; ListFolder() tells what is wrong with it.
  return std::make_shared<const Folder>(0, PathOf(place));
}

int ListFolder(const Folder& folder, Listing* listing) {
  WIN32_FIND_DATAW entry = {};
  const HANDLE search = FindFirstFileW(SystemPath(JoinPath(folder.path(), "*")).c_str(), &entry);
  if (search == INVALID_HANDLE_VALUE) return LastError();
  do {
    const std::wstring_view name = entry.cFileName;
    if (name != L"." && name != L"..") {
      listing->Add(FromWide(name), KindOf(entry.dwFileAttributes, entry.dwReserved0));
    }
  } while (FindNextFileW(search, &entry) != 0);
  const int error = LastError();
  FindClose(search);
  listing->Sort();
  return error == ERROR_NO_MORE_FILES ? 0 : error;
}

Place ReachThroughFolder(const std::string& path, int*) {
  const std::size_t nameAt = path.find_last_of("/\\") + 1;
  if (nameAt == 0 || nameAt == path.size()) return {nullptr, path};
  return {std::make_shared<const Folder>(0, path.substr(0, nameAt)), path.substr(nameAt)};
}

std::string JoinPath(const std::string& folder, std::string_view name) {
  std::string path = folder;
  if (!path.ends_with('/') && !path.ends_with('\\')) path += '\\';
  path += name;
  return path;
}

Status WhyUnreadable(const Place& place) {
  Status status = StatusOf(place, true);
  if (status.error != 0 || status.kind != Kind::FILE) return status;
  const Handle file(OpenPath(PathOf(place), GENERIC_READ, 0));
  if (!file.IsOpen()) return Failed(LastError());
  char byte = 0;
  DWORD count = 0;
  if (ReadFile(file.get(), &byte, 1, &count, nullptr) == 0) return Failed(LastError());
  return status;
}

bool MatchesGlob(const std::string& glob, const std::string& text) {
  return PathMatchSpecW(ToWide(text).c_str(), ToWide(glob).c_str()) != FALSE;
}

void HoldModules() {
  const std::wstring folder = LibraryFolder();
  if (folder.empty()) return;
  const std::string set = Environment("TVN_FILTERS_DIR");
  const std::string filters = set.empty() ? FromWide(folder + L"filters") : set;
  HoldModule(folder + L"DCRaw.dll");
  HoldModule(ToWide(JoinPath(filters, "TvnPDFImport.dll")));
}

bool IsTerminal(Stream stream) {
  const HANDLE handle = StandardHandle(stream);
  DWORD mode = 0;
  if (GetConsoleMode(handle, &mode) == 0) return false;
  if (stream != Stream::INPUT) {
    SetConsoleMode(handle, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
  }
  return true;
}

std::size_t ReadSome(std::intptr_t handle, char* to, std::size_t capacity, int* error) {
  DWORD count = 0;
  if (IsInterrupted()) return 0;
  if (ReadFile(ToHandle(handle), to, static_cast<DWORD>(capacity), &count, nullptr) != 0) {
    return count;
  }
  const int failure = LastError();
  if (!IsInterrupted() && failure != ERROR_BROKEN_PIPE) *error = failure;
  return 0;
}

std::intptr_t OpenForReading(const std::string& path, int* error) {
  const HANDLE file = OpenPath(path, GENERIC_READ, 0);
  if (file == INVALID_HANDLE_VALUE) *error = LastError();
  return reinterpret_cast<std::intptr_t>(file);
}

std::intptr_t StandardInput() {
  return reinterpret_cast<std::intptr_t>(StandardHandle(Stream::INPUT));
}

void CloseHandle(std::intptr_t handle) { ::CloseHandle(ToHandle(handle)); }

bool IsReadable(std::intptr_t handle) {
  switch (GetFileType(ToHandle(handle))) {
    case FILE_TYPE_DISK:
      return true;
    case FILE_TYPE_PIPE: {
      DWORD available = 0;
      return PeekNamedPipe(ToHandle(handle), nullptr, 0, nullptr, &available, nullptr) == 0 ||
             available != 0;
    }
    default:
      return WaitForSingleObject(ToHandle(handle), 0) == WAIT_OBJECT_0;
  }
}

int WriteAll(Stream stream, std::string_view bytes) {
  const HANDLE handle = StandardHandle(stream);
  if (IsConsole(handle)) {
    const std::wstring wide = ToWide(bytes);
    DWORD written = 0;
    for (std::size_t at = 0; at < wide.size(); at += written) {
      constexpr std::size_t MOST = 8'192;
      const DWORD count = static_cast<DWORD>(std::min(MOST, wide.size() - at));
      if (WriteConsoleW(handle, wide.data() + at, count, &written, nullptr) == 0) {
        return LastError();
      }
    }
    return 0;
  }
  while (!bytes.empty()) {
    DWORD written = 0;
    if (WriteFile(handle, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) == 0) {
      return LastError();
    }
    bytes.remove_prefix(written);
  }
  return 0;
}

bool IsClosedPipe(int error) { return error == ERROR_BROKEN_PIPE || error == ERROR_NO_DATA; }

void CatchInterrupts() {
  DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &mainThread, 0,
                  FALSE, DUPLICATE_SAME_ACCESS);
  SetConsoleCtrlHandler(OnInterrupt, TRUE);
}

bool IsInterrupted() { return isInterrupted; }

void EndInterrupted() { EndNow(130); }

void EndClosedPipe() { EndNow(141); }

void EndNow(int status) {
  TerminateProcess(GetCurrentProcess(), static_cast<UINT>(status));
  for (;;) Sleep(INFINITE);
}

void BlockInterruptsInThisThread() {}

void RaiseOpenFileLimit() {}

std::string Environment(const char* name) {
  const std::wstring wideName = ToWide(name);
  std::wstring value(GetEnvironmentVariableW(wideName.c_str(), nullptr, 0), L'\0');
  value.resize(
      GetEnvironmentVariableW(wideName.c_str(), value.data(), static_cast<DWORD>(value.size())));
  return FromWide(value);
}

}  // namespace typescout::cli::platform
