#include "cli/platform/folders.h"

#include <algorithm>
#include <utility>

#include "cli/platform/windows/handles.h"
#include "cli/utf8.h"

namespace typescout::cli::platform {
namespace {

// Absolute, with the names of devices as such; empty when the system refuses it.
std::wstring FullPath(const std::wstring& path) {
  std::wstring full(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
  full.resize(
      GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
  return full;
}

std::string PathOf(const Place& place) {
  return place.folder == nullptr ? place.name : JoinPath(place.folder->path(), place.name);
}

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

Kind KindOf(DWORD attributes, DWORD tag) {
  const bool isLink = (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
                      (tag == IO_REPARSE_TAG_SYMLINK || tag == IO_REPARSE_TAG_MOUNT_POINT);
  if (isLink) return Kind::LINK;
  return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? Kind::FOLDER : Kind::FILE;
}

// Where the last component of the path begins.
std::size_t NameAt(std::string_view path) {
  const std::size_t nameAt = path.find_last_of("/\\") + 1;
  return nameAt == 0 && path.size() > 1 && path[1] == ':' ? 2 : nameAt;
}

// What a name stands for that is no file's, such as NUL, COM1 or \\.\pipe\name. Opening it could
// wait, or change something. NOT_TOLD for files and folders.
Kind KindOfDevice(const std::string& path) {
  constexpr std::wstring_view DEVICES = L"\\\\.\\";
  const std::wstring full = FullPath(ToWide(path));
  if (!full.starts_with(DEVICES)) return Kind::NOT_TOLD;
  const std::wstring_view name = std::wstring_view(full).substr(DEVICES.size());
  if (name.find(L'\\') == name.npos) return Kind::CHARACTER_DEVICE;
  return _wcsnicmp(name.data(), L"pipe\\", 5) == 0 ? Kind::FIFO : Kind::NOT_TOLD;
}

// Adds the names that a pattern matches in its folder; returns the error.
int Find(const std::string& pattern, Listing* listing) {
  WIN32_FIND_DATAW entry = {};
  const HANDLE search = FindFirstFileW(SystemPath(pattern).c_str(), &entry);
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

// The system counts hundreds of nanoseconds since 1601.
Time TimeOf(const FILETIME& time) {
  constexpr std::int64_t SECOND = 10'000'000;
  constexpr std::int64_t YEARS_1601_TO_1970 = 11'644'473'600;
  const std::uint64_t count = std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
  return {static_cast<std::int64_t>(count / SECOND) - YEARS_1601_TO_1970,
          static_cast<std::int32_t>(count % SECOND * 100)};
}

}  // namespace

std::wstring SystemPath(const std::string& path) {
  constexpr std::size_t SHORT = 240;
  const std::wstring wide = ToWide(path);
  if (wide.starts_with(L"\\\\?\\")) return wide;
  const std::wstring full = FullPath(wide);
  if (full.size() < SHORT) return wide;
  return full.starts_with(L"\\\\") ? L"\\\\?\\UNC" + full.substr(1) : L"\\\\?\\" + full;
}

HANDLE OpenPath(const std::string& path, DWORD access, DWORD flags) {
  return CreateFileW(SystemPath(path).c_str(), access,
                     FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                     FILE_FLAG_BACKUP_SEMANTICS | flags, nullptr);
}

Folder::Folder(std::intptr_t handle, std::string path) : handle_(handle), path_(std::move(path)) {}

Folder::~Folder() = default;

Status StatusOf(const Place& place, bool followLink) {
  Status status;
  status.kind = KindOfDevice(PathOf(place));
  if (status.kind != Kind::NOT_TOLD) return status;
  const Handle file(
      OpenPath(PathOf(place), FILE_READ_ATTRIBUTES, followLink ? 0 : FILE_FLAG_OPEN_REPARSE_POINT));
  if (!file.IsOpen()) {
    const int error = LastError();
    // Wildcards that match nothing, say.
    return Failed(error == ERROR_INVALID_NAME ? ERROR_FILE_NOT_FOUND : error);
  }
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
  status.modified = TimeOf(info.ftLastWriteTime);
  return status;
}

FolderPtr OpenFolder(const Place& place, bool, int*) {
  // Nothing is held open.
  return std::make_shared<const Folder>(0, PathOf(place));
}

int ListFolder(const Place& place, bool, Listing* listing) {
  return Find(JoinPath(PathOf(place), "*"), listing);
}

Place ReachThroughFolder(const std::string& path, int*) {
  const std::size_t nameAt = NameAt(path);
  if (nameAt == 0) return {nullptr, path};
  return {std::make_shared<const Folder>(0, path.substr(0, nameAt)), path.substr(nameAt)};
}

void ExpandWildcards(const std::string& argument, std::vector<std::string>* paths) {
  const std::size_t nameAt = NameAt(argument);
  Listing names;
  if (argument.find_first_of("*?", nameAt) != std::string::npos) Find(argument, &names);
  if (names.size() == 0) paths->push_back(argument);
  for (std::size_t i = 0; i < names.size(); ++i) {
    std::string path = argument.substr(0, nameAt) + std::string(names.name(i));
    // By itself it would be standard input.
    paths->push_back(path == "-" ? ".\\-" : std::move(path));
  }
}

bool IsSeparator(char c) { return c == '/' || c == '\\'; }

void FoldCase(std::wstring* name) {
  const int size = static_cast<int>(name->size());
  const std::wstring from = *name;
  LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, from.data(), size, name->data(), size,
                nullptr, nullptr, 0);
}

std::string JoinPath(const std::string& folder, std::string_view name) {
  std::string path = folder;
  // C: is the current folder of the drive, C:\ its root.
  if (NameAt(path) != path.size()) path += '\\';
  path += name;
  return path;
}

int TryToRead(const Place& place, std::string* beginning) {
  const Handle file(OpenPath(PathOf(place), GENERIC_READ, 0));
  if (!file.IsOpen()) return LastError();
  DWORD count = 0;
  const DWORD size = static_cast<DWORD>(beginning->size());
  const BOOL isRead = ReadFile(file.get(), beginning->data(), size, &count, nullptr);
  const int error = isRead == 0 ? LastError() : 0;
  beginning->resize(count);
  return error;
}

// A folder with a long path is given by its short name, where the volume has such names.
PathForLibrary::PathForLibrary(const Place& place) : path_(ToWide(PathOf(place))) {
  if (std::max(path_.size(), FullPath(path_).size()) <= TYPESCOUT_PATH_LIMIT) return;
  const std::string path = PathOf(place);
  const std::size_t nameAt = NameAt(path);
  const std::wstring folder = SystemPath(nameAt == 0 ? "." : path.substr(0, nameAt));
  std::wstring brief(GetShortPathNameW(folder.c_str(), nullptr, 0), L'\0');
  brief.resize(GetShortPathNameW(folder.c_str(), brief.data(), static_cast<DWORD>(brief.size())));
  if (brief.empty()) return;
  brief = ToWide(JoinPath(FromWide(brief), path.substr(nameAt)));
  // A system that allows long paths opens it by the one that was given, when that is short enough.
  if (brief.size() <= TYPESCOUT_PATH_LIMIT) path_ = std::move(brief);
}

PathForLibrary::~PathForLibrary() = default;

}  // namespace typescout::cli::platform
