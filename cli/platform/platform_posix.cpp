#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <fnmatch.h>
#include <limits.h>
#include <poll.h>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include "cli/platform/platform.h"
#include "typescout/typescout.h"

namespace typescout::cli::platform {
namespace {

int Descriptor(const Folder* folder) {
  return folder == nullptr ? AT_FDCWD : static_cast<int>(folder->handle());
}

int Descriptor(Stream stream) { return static_cast<int>(stream); }

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

Status ToStatus(const struct stat& status) {
  return {.error = 0,
          .kind = KindOf(status.st_mode),
          .device = status.st_dev,
          .serial = status.st_ino,
          .size = static_cast<std::uint64_t>(status.st_size)};
}

Status Failed(int error) {
  Status status;
  status.error = error;
  return status;
}

// The signal; 0 while there was none.
std::atomic<int> interruptedBy = 0;
static_assert(std::atomic<int>::is_always_lock_free);  // as a signal handler needs it
// Becomes readable with the first interrupt, so that one that comes just before a wait ends it too.
std::array<int, 2> interruptPipe = {-1, -1};

void OnInterrupt(int signal) {
  const int error = errno;
  interruptedBy = signal;
  [[maybe_unused]] const ssize_t written = write(interruptPipe[1], "", 1);
  errno = error;
}

constexpr std::array<int, 3> INTERRUPTS = {SIGINT, SIGTERM, SIGHUP};

[[noreturn]] void EndBySignal(int signal) {
  std::signal(signal, SIG_DFL);
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, signal);
  pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
  raise(signal);
  _exit(128 + signal);
}

// Where the library itself was loaded from, with a slash at the end.
std::string LibraryFolder() {
  Dl_info info = {};
  if (dladdr(reinterpret_cast<const void*>(&GetNumTypeScoutProcs), &info) == 0) return {};
  const std::string path = info.dli_fname == nullptr ? "" : info.dli_fname;
  return path.substr(0, path.rfind('/') + 1);
}

void HoldModule(const std::string& path) {
  if (access(path.c_str(), R_OK) == 0) dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
}

bool HasDescriptorFolder() {
  static const bool has = access("/proc/self/fd", X_OK) == 0;
  return has;
}

}  // namespace

std::string ErrorText(int error) { return std::strerror(error); }

std::vector<std::string> Arguments(int argc, char** argv) {
  return {argv + std::min(argc, 1), argv + argc};
}

Folder::Folder(std::intptr_t handle, std::string path) : handle_(handle), path_(std::move(path)) {}

Folder::~Folder() { close(static_cast<int>(handle_)); }

std::vector<std::string> Folder::ShortPaths() const {
  if (!HasDescriptorFolder()) return {};
  const std::string number = std::to_string(handle_);
  return {"/proc/self/fd/" + number + "/", "/dev/fd/" + number + "/"};
}

Status StatusOf(const Place& place, bool followLink) {
  struct stat status = {};
  const int flags = followLink ? 0 : AT_SYMLINK_NOFOLLOW;
  if (fstatat(Descriptor(place.folder.get()), place.name.c_str(), &status, flags) != 0) {
    return Failed(errno);
  }
  return ToStatus(status);
}

FolderPtr OpenFolder(const Place& place, bool followLink, int* error) {
  const int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | (followLink ? 0 : O_NOFOLLOW);
  const int folder = openat(Descriptor(place.folder.get()), place.name.c_str(), flags);
  if (folder < 0) {
    *error = errno;
    return nullptr;
  }
  return std::make_shared<const Folder>(folder, std::string());
}

int ListFolder(const Folder& folder, Listing* listing) {
  const int own =
      openat(static_cast<int>(folder.handle()), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (own < 0) return errno;
  DIR* stream = fdopendir(own);
  if (stream == nullptr) {
    const int error = errno;
    close(own);
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

std::string JoinPath(const std::string& folder, std::string_view name) {
  std::string path = folder;
  if (!path.ends_with('/')) path += '/';
  path += name;
  return path;
}

Status WhyUnreadable(const Place& place) {
  Status status = StatusOf(place, true);
  if (status.error != 0 || status.kind != Kind::FILE) return status;
  const int file = openat(Descriptor(place.folder.get()), place.name.c_str(),
                          O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (file < 0) return Failed(errno);
  char byte = 0;
  if (read(file, &byte, 1) < 0) status = Failed(errno);
  close(file);
  return status;
}

bool MatchesGlob(const std::string& glob, const std::string& text) {
  return fnmatch(glob.c_str(), text.c_str(), 0) == 0;
}

void HoldModules() {
  const std::string folder = LibraryFolder();
  if (folder.empty()) return;
  const char* set = secure_getenv("TVN_FILTERS_DIR");
  const std::string filters = set != nullptr && *set != '\0' ? set : folder + "filters";
  HoldModule(folder + "DCRaw.so");
  HoldModule(JoinPath(filters, "TvnPDFImport.so"));
}

bool IsTerminal(Stream stream) { return isatty(Descriptor(stream)) != 0; }

std::size_t ReadSome(std::intptr_t handle, char* to, std::size_t capacity, int* error) {
  const int file = static_cast<int>(handle);
  std::array<pollfd, 2> waiting = {pollfd{.fd = file, .events = POLLIN, .revents = 0},
                                   pollfd{.fd = interruptPipe[0], .events = POLLIN, .revents = 0}};
  for (;;) {
    poll(waiting.data(), waiting.size(), -1);
    if (IsInterrupted()) return 0;
    const ssize_t count = read(file, to, capacity);
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno != EINTR && errno != EAGAIN) {
      *error = errno;
      return 0;
    }
  }
}

std::intptr_t OpenForReading(const std::string& path, int* error) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) *error = errno;
  return file;
}

std::intptr_t StandardInput() { return STDIN_FILENO; }

void CloseHandle(std::intptr_t handle) { close(static_cast<int>(handle)); }

bool IsReadable(std::intptr_t handle) {
  pollfd waiting = {.fd = static_cast<int>(handle), .events = POLLIN, .revents = 0};
  return poll(&waiting, 1, 0) != 0;
}

int WriteAll(Stream stream, std::string_view bytes) {
  // A reader that has stopped reading does not keep an interrupted program alive.
  constexpr int PATIENCE = 1000;
  pollfd waiting = {.fd = Descriptor(stream), .events = POLLOUT, .revents = 0};
  while (!bytes.empty()) {
    const bool isHasty = IsInterrupted();
    if (isHasty && poll(&waiting, 1, PATIENCE) == 0) return EINTR;
    const std::size_t size = isHasty ? std::min<std::size_t>(bytes.size(), PIPE_BUF) : bytes.size();
    const ssize_t count = write(waiting.fd, bytes.data(), size);
    if (count >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno == EAGAIN) {
      poll(&waiting, 1, -1);
    } else if (errno != EINTR) {
      return errno;
    }
  }
  return 0;
}

bool IsClosedPipe(int error) { return error == EPIPE; }

void CatchInterrupts() {
  if (pipe2(interruptPipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
  for (const int signal : INTERRUPTS) {
    struct sigaction action = {};
    // What our starter ignores (nohup, a background job) stays ignored.
    if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) continue;
    action.sa_handler = OnInterrupt;
    // Without SA_RESTART, so that what waits for something else comes back as well.
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
  }
}

bool IsInterrupted() { return interruptedBy != 0; }

void EndInterrupted() { EndBySignal(interruptedBy.load()); }

void EndClosedPipe() { EndBySignal(SIGPIPE); }

void EndNow(int status) { _exit(status); }

void BlockInterruptsInThisThread() {
  sigset_t set;
  sigemptyset(&set);
  for (const int signal : INTERRUPTS) sigaddset(&set, signal);
  pthread_sigmask(SIG_BLOCK, &set, nullptr);
}

void RaiseOpenFileLimit() {
  constexpr rlim_t ENOUGH = 65'536;
  rlimit limit = {};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= ENOUGH) return;
  limit.rlim_cur = std::min(ENOUGH, limit.rlim_max);
  setrlimit(RLIMIT_NOFILE, &limit);
}

std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

}  // namespace typescout::cli::platform
