#include "host/posix/regular_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "host/posix/wide_path.h"

namespace posix_host {
namespace {

int OpenForReading(const char* path, int flags) {
  int descriptor;
  do {
    descriptor = open(path, O_RDONLY | O_NOCTTY | O_CLOEXEC | flags);
  } while (descriptor < 0 && errno == EINTR);
  return descriptor;
}

}  // namespace

bool RegularFile::Open(const wchar_t* path) {
  Close();
  const PathBytes bytes(path);
  if (bytes.get() == nullptr) {
    errno = EINVAL;
    return false;
  }
  // Opening a pipe wakes a writer that waits on it, and opening a device can do anything. So ask
  // first, and again afterwards, since the name may have come to mean another file in between.
  struct stat status;
  if (stat(bytes.get(), &status) != 0) return false;
  if (!S_ISREG(status.st_mode)) {
    errno = EINVAL;
    return false;
  }
  descriptor_ = OpenForReading(bytes.get(), O_NONBLOCK);
  // Another process holds a lease on the file. The system has it give the lease up, and takes it
  // away after a while: wait for that.
  if (descriptor_ < 0 && errno == EAGAIN) descriptor_ = OpenForReading(bytes.get(), 0);
  if (descriptor_ < 0) return false;
  if (fstat(descriptor_, &status) != 0) {
    Close();
    return false;
  }
  if (!S_ISREG(status.st_mode)) {
    Close();
    errno = EINVAL;
    return false;
  }
  size_ = static_cast<std::uint64_t>(status.st_size);
  return true;
}

void RegularFile::Close() {
  if (descriptor_ >= 0) {
    const int error = errno;
    close(descriptor_);  // gone even when interrupted
    errno = error;
  }
  descriptor_ = -1;
  size_ = 0;
}

std::size_t RegularFile::ReadAt(std::uint64_t offset, void* bytes, std::size_t count) const {
  constexpr std::uint64_t LAST_OFFSET = 0x7FFF'FFFF'FFFF'FFFF;
  if (descriptor_ < 0 || offset > LAST_OFFSET) return 0;
  std::size_t done = 0;
  while (done < count) {
    const ssize_t got = pread(descriptor_, static_cast<char*>(bytes) + done, count - done,
                              static_cast<off_t>(offset + done));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    done += static_cast<std::size_t>(got);
    if (offset + done == size_) break;  // nothing more to come: no need to ask
  }
  return done;
}

}  // namespace posix_host
