// Files and folders by their paths.
#ifndef TYPESCOUT_CLI_PLATFORM_FOLDERS_H
#define TYPESCOUT_CLI_PLATFORM_FOLDERS_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "typescout/typescout.h"

namespace typescout::cli::platform {

enum class Kind : char {
  FILE,
  FOLDER,
  FIFO,
  SOCKET,
  CHARACTER_DEVICE,
  BLOCK_DEVICE,
  LINK,
  OTHER,
  NOT_TOLD,  // the folder's listing does not say
};

// A moment, since 1970-01-01 00:00 UTC.
struct Time {
  std::int64_t seconds = 0;
  std::int32_t nanoseconds = 0;  // 0 to 999,999,999, later than the second
};

struct Status {
  int error = 0;  // when set, nothing else is
  Kind kind = Kind::OTHER;
  std::uint64_t device = 0;
  std::uint64_t serial = 0;  // with `device`, names the file while it exists
  std::uint64_t size = 0;
  Time modified;
};

// The names in a folder, in the order of their bytes, "." and ".." left out. All in one block of
// memory, so that a folder of a million files costs little more than their names.
class Listing {
 public:
  void Add(std::string_view name, Kind kind);
  void Sort();
  std::size_t size() const { return starts_.size(); }
  std::string_view name(std::size_t index) const;
  Kind kind(std::size_t index) const;
  std::size_t LongestName() const { return longestName_; }  // in bytes

 private:
  std::string names_;  // for each: its kind, its bytes, a zero
  std::vector<std::size_t> starts_;
  std::size_t longestName_ = 0;
};

// A folder held open, so that what is in it can be reached whatever the length of its path.
class Folder {
 public:
  Folder(std::intptr_t handle, std::string path);
  ~Folder();
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  std::intptr_t handle() const { return handle_; }
  const std::string& path() const { return path_; }

 private:
  std::intptr_t handle_;
  std::string path_;
};

using FolderPtr = std::shared_ptr<const Folder>;

// A file as the system reaches it: `name` in `folder`, or relative to the current folder when
// `folder` is null.
struct Place {
  FolderPtr folder;
  std::string name;
};

// Opens nothing. Without `followLink` a symbolic link is reported as a link.
Status StatusOf(const Place& place, bool followLink);

// Null with `*error` set when it does not open. Never opens anything but a folder.
FolderPtr OpenFolder(const Place& place, bool followLink, int* error);

// The error, if any, that ends the listing; what was read until then is in `*listing`. Never opens
// anything but a folder.
int ListFolder(const Place& place, bool followLink, Listing* listing);

// Splits a path that is too long for one call into an open folder and a name in it. The folder is
// null with `*error` set when that fails.
Place ReachThroughFolder(const std::string& path, int* error);

// Adds the paths that an argument of the command line stands for. Where the shell leaves wildcards
// to the program, as on Windows: what the pattern matches, folders too, in the order of the bytes.
// Otherwise, and when nothing matches, the argument itself.
void ExpandWildcards(const std::string& argument, std::vector<std::string>* paths);

// What separates the components of a path on this system; '/' does everywhere.
bool IsSeparator(char c);

// Where names of files are the same whatever the case of their letters: brings all into one case.
void FoldCase(std::wstring* name);

// The path with a further component.
std::string JoinPath(const std::string& folder, std::string_view name);

// Opens what was found to be a file and reads as many of its first bytes as `beginning` is long,
// which is cut to those that there are. Returns the error.
int TryToRead(const Place& place, std::string* beginning);

// The path by which the library can open a file, at most TYPESCOUT_PATH_LIMIT characters long,
// where the file's own may be longer. What that takes is held until the object goes; it stays on
// its thread.
class PathForLibrary {
 public:
  explicit PathForLibrary(const Place& place);
  ~PathForLibrary();
  PathForLibrary(const PathForLibrary&) = delete;
  PathForLibrary& operator=(const PathForLibrary&) = delete;

  // Null when there is no such path.
  const wchar_t* get() const {
    return path_.size() <= TYPESCOUT_PATH_LIMIT ? path_.c_str() : nullptr;
  }

 private:
  std::wstring path_;
  std::intptr_t handle_ = -1;  // the file itself, or the thread's folder to go back to
  bool isElsewhere_ = false;   // the thread's current folder is not the program's
};

// The system's folder for temporary files.
std::string TemporaryFolder();

// A file in it that is gone when the object is.
class TemporaryFile {
 public:
  // `extension` without the dot; empty for a name without one.
  explicit TemporaryFile(std::string_view extension);
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  void Append(std::string_view bytes);
  // The first error; 0 while there is none. Asked before others open the file.
  int Finish();
  const std::string& path() const { return path_; }

 private:
  std::intptr_t handle_ = -1;
  int error_ = 0;
  std::string path_;
};

}  // namespace typescout::cli::platform

#endif  // TYPESCOUT_CLI_PLATFORM_FOLDERS_H
