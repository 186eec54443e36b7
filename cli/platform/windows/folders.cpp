#include "cli/platform/folders.h"

#include <array>

#include "cli/platform/windows/handles.h"
#include "cli/utf8.h"

namespace typescout::cli::platform {
namespace {

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

// The system counts hundreds of nanoseconds since 1601.
std::int64_t Nanoseconds(const FILETIME& time) {
  constexpr std::int64_t YEARS_1601_TO_1970 = 116'444'736'000'000'000;
  const std::int64_t count = std::int64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
  return (count - YEARS_1601_TO_1970) * 100;
}

}  // namespace

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

HANDLE OpenPath(const std::string& path, DWORD access, DWORD flags) {
  return CreateFileW(SystemPath(path).c_str(), access,
                     FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                     FILE_FLAG_BACKUP_SEMANTICS | flags, nullptr);
}

Folder::Folder(std::intptr_t handle, std::string path) : handle_(handle), path_(std::move(path)) {}

Folder::~Folder() = default;

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
  status.modified = Nanoseconds(info.ftLastWriteTime);
  return status;
}

FolderPtr OpenFolder(const Place& place, bool, int*) {
  // Nothing is held open.
  return std::make_shared<const Folder>(0, PathOf(place));
}

int ListFolder(const Place& place, bool, Listing* listing) {
  WIN32_FIND_DATAW entry = {};
  const HANDLE search = FindFirstFileW(SystemPath(JoinPath(PathOf(place), "*")).c_str(), &entry);
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
  if (nameAt == 0) return {nullptr, path};
  return {std::make_shared<const Folder>(0, path.substr(0, nameAt)), path.substr(nameAt)};
}

bool IsSeparator(char c) { return c == '/' || c == '\\'; }

bool IgnoresCase() { return true; }

std::string JoinPath(const std::string& folder, std::string_view name) {
  std::string path = folder;
  if (!path.ends_with('/') && !path.ends_with('\\')) path += '\\';
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

// A folder with a long path is told by its short name, where the volume has such names.
PathForLibrary::PathForLibrary(const Place& place) : path_(ToWide(PathOf(place))) {
  if (path_.size() <= TYPESCOUT_PATH_LIMIT || place.folder == nullptr) return;
  const std::wstring folder = SystemPath(place.folder->path());
  std::wstring brief(GetShortPathNameW(folder.c_str(), nullptr, 0), L'\0');
  brief.resize(GetShortPathNameW(folder.c_str(), brief.data(), static_cast<DWORD>(brief.size())));
  if (!brief.empty()) path_ = ToWide(JoinPath(FromWide(brief), place.name));
}

PathForLibrary::~PathForLibrary() = default;

}  // namespace typescout::cli::platform
