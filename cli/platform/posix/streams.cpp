#include "cli/platform/streams.h"

#include <fcntl.h>
#include <limits.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "cli/platform/signals.h"

namespace typescout::cli::platform {
namespace {

int Descriptor(Stream stream) { return static_cast<int>(stream); }

bool IsNullDevice(const struct stat& status) {
  struct stat null = {};
  return S_ISCHR(status.st_mode) && stat("/dev/null", &null) == 0 && null.st_rdev == status.st_rdev;
}

}  // namespace

void OccupyStandardStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(stream, F_GETFD) >= 0 || errno != EBADF) continue;
    // The lowest free descriptor is this one. Opened the wrong way round, so that using it fails.
    if (open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY) != stream) return;
  }
}

bool IsTerminal(Stream stream) { return isatty(Descriptor(stream)) != 0; }

bool IsFile(Stream stream) {
  struct stat status = {};
  if (fstat(Descriptor(stream), &status) != 0) return false;
  return S_ISREG(status.st_mode) || IsNullDevice(status);
}

std::size_t TerminalWidth(Stream stream) {
  constexpr std::size_t USUAL = 80;
  winsize size = {};
  const bool isKnown = ioctl(Descriptor(stream), TIOCGWINSZ, &size) == 0 && size.ws_col != 0;
  return isKnown ? size.ws_col : USUAL;
}

std::size_t ReadSome(std::intptr_t handle, char* to, std::size_t capacity, int* error) {
  pollfd waiting = {.fd = static_cast<int>(handle), .events = POLLIN, .revents = 0};
  for (;;) {
    const ssize_t count = read(waiting.fd, to, capacity);
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno == EAGAIN) {
      poll(&waiting, 1, -1);
    } else if (errno != EINTR) {
      *error = errno;
      return 0;
    }
    if (IsInterrupted()) return 0;
  }
}

std::size_t ReadAt(std::intptr_t handle, std::uint64_t offset, char* to, std::size_t capacity,
                   int* error) {
  std::size_t size = 0;
  while (size < capacity) {
    const ssize_t count = pread(static_cast<int>(handle), to + size, capacity - size,
                                static_cast<off_t>(offset + size));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) *error = errno;
    if (count <= 0) break;
    size += static_cast<std::size_t>(count);
  }
  return size;
}

std::intptr_t OpenForReading(const std::string& path, int* error) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) *error = errno;
  return file;
}

std::intptr_t StandardInput() { return STDIN_FILENO; }

void CloseHandle(std::intptr_t handle) { close(static_cast<int>(handle)); }

int WriteAll(Stream stream, std::string_view bytes) {
  constexpr int PATIENCE = 1000;
  pollfd waiting = {.fd = Descriptor(stream), .events = POLLOUT, .revents = 0};
  while (!bytes.empty()) {
    const bool isHasty = IsInterrupted();
    const int ready = isHasty ? poll(&waiting, 1, PATIENCE) : 1;
    if (ready == 0) return EINTR;
    if (ready < 0 && errno == EINTR) continue;
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

}  // namespace typescout::cli::platform
