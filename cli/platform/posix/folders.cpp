#include "cli/platform/folders.h"

#include <dirent.h>
#include <fcntl.h>
#include <limits.h>
#include <sched.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "cli/platform/posix/descriptors.h"
#include "cli/utf8.h"

namespace typescout::cli::platform {
namespace {

int Descriptor(const Place& place) {
  return place.folder == nullptr ? AT_FDCWD : static_cast<int>(place.folder->handle());
}

Kind KindOf(mode_t mode) {
  if (S_ISREG(mode)) return Kind::FILE;
  if (S_ISDIR(mode)) return Kind::FOLDER;
  if (S_ISFIFO(mode)) return Kind::FIFO;
  if (S_ISSOCK(mode)) return Kind::SOCKET;
  if (S_ISCHR(mode)) return Kind::CHARACTER_DEVICE;
  if (S_ISBLK(mode)) return Kind::BLOCK_DEVICE;
  if (S_ISLNK(mode)) return Kind::LINK;
  return Kind::OTHER;
}

Kind KindOfEntry(unsigned char type) {
  return type == DT_UNKNOWN ? Kind::NOT_TOLD : KindOf(DTTOIF(static_cast<mode_t>(type)));
}

Status Failed(int error) {
  Status status;
  status.error = error;
  return status;
}

int OpenAsFolder(const Place& place, bool followLink) {
  return openat(Descriptor(place), place.name.c_str(),
                O_RDONLY | O_DIRECTORY | O_CLOEXEC | (followLink ? 0 : O_NOFOLLOW));
}

// Gives this thread a current folder of its own and makes it `folder`; -1 when that is not allowed.
// Otherwise the folder that it was in.
int GoTo(int folder) {
  if (unshare(CLONE_FS) != 0) return -1;
  const int before = open(".", O_PATH | O_DIRECTORY | O_CLOEXEC);
  if (before < 0) return -1;
  if (fchdir(folder) == 0) return before;
  close(before);
  return -1;
}

}  // namespace

Folder::Folder(std::intptr_t handle, std::string path) : handle_(handle), path_(std::move(path)) {}

Folder::~Folder() { close(static_cast<int>(handle_)); }

Status StatusOf(const Place& place, bool followLink) {
  struct stat status = {};
  const int flags = followLink ? 0 : AT_SYMLINK_NOFOLLOW;
  if (fstatat(Descriptor(place), place.name.c_str(), &status, flags) != 0) return Failed(errno);
  return {.error = 0,
          .kind = KindOf(status.st_mode),
          .device = status.st_dev,
          .serial = status.st_ino,
          .size = static_cast<std::uint64_t>(status.st_size),
          .modified = {status.st_mtim.tv_sec, static_cast<std::int32_t>(status.st_mtim.tv_nsec)}};
}

FolderPtr OpenFolder(const Place& place, bool followLink, int* error) {
  const int folder = OpenAsFolder(place, followLink);
  if (folder >= 0) return std::make_shared<const Folder>(folder, std::string());
  *error = errno;
  return nullptr;
}

int ListFolder(const Place& place, bool followLink, Listing* listing) {
  const int folder = OpenAsFolder(place, followLink);
  if (folder < 0) return errno;
  DIR* stream = fdopendir(folder);
  if (stream == nullptr) {
    const int error = errno;
    close(folder);
    return error;
  }
  for (errno = 0; const dirent* entry = readdir(stream); errno = 0) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") listing->Add(name, KindOfEntry(entry->d_type));
  }
  const int error = errno;
  closedir(stream);
  listing->Sort();
  return error;
}

Place ReachThroughFolder(const std::string& path, int* error) {
  constexpr std::size_t STEP = PATH_MAX - 1;
  FolderPtr folder;
  const std::size_t nameAt = path.rfind('/') + 1;
  std::string_view left = std::string_view(path).substr(0, nameAt);
  while (!left.empty()) {
    const std::size_t slash = left.size() <= STEP ? left.size() - 1 : left.rfind('/', STEP - 1);
    if (slash == std::string_view::npos) {
      *error = ENAMETOOLONG;
      return {};
    }
    folder = OpenFolder({folder, std::string(left.substr(0, slash + 1))}, true, error);
    if (folder == nullptr) return {};
    left.remove_prefix(slash + 1);
    left.remove_prefix(std::min(left.find_first_not_of('/'), left.size()));
  }
  return {folder, nameAt == path.size() ? "." : path.substr(nameAt)};
}

void ExpandWildcards(const std::string& argument, std::vector<std::string>* paths) {
  paths->push_back(argument);
}

bool IsSeparator(char c) { return c == '/'; }

void FoldCase(std::wstring*) {}

std::string JoinPath(const std::string& folder, std::string_view name) {
  std::string path;
  path.reserve(folder.size() + 1 + name.size());
  path += folder;
  if (!path.ends_with('/')) path += '/';
  path += name;
  return path;
}

int TryToRead(const Place& place, std::string* beginning) {
  constexpr int FLAGS = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  int file = openat(Descriptor(place), place.name.c_str(), FLAGS | O_NOATIME);
  // Only the owner of a file may leave its time of access as it is.
  if (file < 0 && errno == EPERM) file = openat(Descriptor(place), place.name.c_str(), FLAGS);
  if (file < 0) return errno;
  const ssize_t count = read(file, beginning->data(), beginning->size());
  const int error = count < 0 ? errno : 0;
  beginning->resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
  close(file);
  return error;
}

PathForLibrary::PathForLibrary(const Place& place) : path_(ToWide(place.name)) {
  if (place.folder == nullptr) return;
  const int folder = static_cast<int>(place.folder->handle());
  path_ = ToWide(DescriptorPath(folder) + "/" + place.name);
  if (path_.size() <= TYPESCOUT_PATH_LIMIT && HasDescriptorFolder()) return;
  handle_ = GoTo(folder);
  if (handle_ >= 0) {
    isElsewhere_ = true;
    path_ = ToWide(place.name);
    return;
  }
  // The library sees no extension then, but the content.
  handle_ = openat(folder, place.name.c_str(), O_PATH | O_CLOEXEC);
  if (handle_ >= 0) path_ = ToWide(DescriptorPath(static_cast<int>(handle_)));
}

PathForLibrary::~PathForLibrary() {
  if (handle_ < 0) return;
  [[maybe_unused]] const int back = isElsewhere_ ? fchdir(static_cast<int>(handle_)) : 0;
  close(static_cast<int>(handle_));
}

}  // namespace typescout::cli::platform
