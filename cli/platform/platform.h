// Everything of the program that the operating system decides. platform_posix.cpp and
// platform_windows.cpp define it; nobody else includes a system header.
//
// Paths are bytes: as they are on POSIX, UTF-8 on Windows. Errors are numbers of the system, 0 for
// none; ErrorText() has their words.
#ifndef TYPESCOUT_CLI_PLATFORM_PLATFORM_H
#define TYPESCOUT_CLI_PLATFORM_PLATFORM_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

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

struct Status {
  int error = 0;  // when set, nothing else is
  Kind kind = Kind::OTHER;
  std::uint64_t device = 0;
  std::uint64_t serial = 0;  // with `device`, names the file while it exists
  std::uint64_t size = 0;
};

std::string ErrorText(int error);

// What main() got, without the program's name.
std::vector<std::string> Arguments(int argc, char** argv);

// The names in a folder, in the order of their bytes, "." and ".." left out. All in one block of
// memory, so that a folder of a million files costs little more than their names.
class Listing {
 public:
  void Add(std::string_view name, Kind kind);
  void Sort();
  std::size_t size() const { return starts_.size(); }
  std::string_view name(std::size_t index) const;
  Kind kind(std::size_t index) const;

 private:
  std::string names_;  // for each: its kind, its bytes, a zero
  std::vector<std::size_t> starts_;
};

// A folder held open, so that what is in it can be reached whatever the length of its path.
class Folder {
 public:
  explicit Folder(std::intptr_t handle, std::string path);
  ~Folder();
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  std::intptr_t handle() const { return handle_; }
  const std::string& path() const { return path_; }

  // Short ways to say this folder in a path, each with its separator at the end, best first; none
  // where the system has no such thing.
  std::vector<std::string> ShortPaths() const;

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

// Opens nothing. Without `followLink` a symbolic link is told as such.
Status StatusOf(const Place& place, bool followLink);

// Null with `*error` set when it does not open. Never opens anything but a folder.
FolderPtr OpenFolder(const Place& place, bool followLink, int* error);

// The error, if any, that ends the listing; what was read until then is in `*listing`.
int ListFolder(const Folder& folder, Listing* listing);

// Splits a path that is too long for one call into an open folder and a name in it. The folder is
// null with `*error` set when that fails.
Place ReachThroughFolder(const std::string& path, int* error);

// The path with a further component.
std::string JoinPath(const std::string& folder, std::string_view name);

// Looks at the file again, opens it and reads a byte: the error is why nobody else can, too.
Status WhyUnreadable(const Place& place);

bool MatchesGlob(const std::string& glob, const std::string& text);

// Keeps the suite's optional modules loaded for the rest of the run; those that are not installed
// or do not load are none of its business.
void HoldModules();

enum class Stream { INPUT, OUTPUT, MESSAGES };

bool IsTerminal(Stream stream);

// Reads up to `capacity` bytes; 0 at the end or with `*error` set. An interrupt (below) ends it
// with 0 and no error.
std::size_t ReadSome(std::intptr_t handle, char* to, std::size_t capacity, int* error);
std::intptr_t OpenForReading(const std::string& path, int* error);
std::intptr_t StandardInput();
void CloseHandle(std::intptr_t handle);

// Whether the next ReadSome() would not wait.
bool IsReadable(std::intptr_t handle);

// Writes all of it; the error otherwise. After an interrupt it waits for the reader a moment only.
int WriteAll(Stream stream, std::string_view bytes);
bool IsClosedPipe(int error);

// From now on Ctrl-C (and a polite request to end) only sets a flag; the second one ends the
// program at once.
void CatchInterrupts();
bool IsInterrupted();
// Ends the program as that interrupt would have. Does not come back.
[[noreturn]] void EndInterrupted();
// Ends the program as a closed pipe would have. Does not come back.
[[noreturn]] void EndClosedPipe();
// Ends the program at once, without waiting for its threads.
[[noreturn]] void EndNow(int status);
// Interrupts go to the thread that called CatchInterrupts(), not to this one.
void BlockInterruptsInThisThread();

// As many open files as the system lets us have.
void RaiseOpenFileLimit();

std::string Environment(const char* name);

}  // namespace typescout::cli::platform

#endif  // TYPESCOUT_CLI_PLATFORM_PLATFORM_H
