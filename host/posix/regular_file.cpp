#include "host/posix/regular_file.h"

#include <fcntl.h>
#include <sys/auxv.h>
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
  // Opening a pipe wakes a writer that waits on it, and opening a device may have side effects. So
  // the kind is checked first, and again after opening, since another file may have the name by
  // then.
  struct stat status;
  if (stat(bytes.get(), &status) != 0) return false;
  if (!S_ISREG(status.st_mode)) {
    errno = EINVAL;
    return false;
  }
  // Reading leaves the time of access as it is where that is allowed: to the file's owner and to
  // root. AT_EUID saves a call of geteuid(). After seteuid(), or in a container, it may be another
  // user: then open() fails with EPERM and is tried again, or the time of access changes.
  const auto user = static_cast<uid_t>(getauxval(AT_EUID));
  int keepTime = user == status.st_uid || user == 0 ? O_NOATIME : 0;
  descriptor_ = OpenForReading(bytes.get(), O_NONBLOCK | keepTime);
  if (descriptor_ < 0 && errno == EPERM && keepTime != 0) {
    keepTime = 0;
    descriptor_ = OpenForReading(bytes.get(), O_NONBLOCK);
  }
  // Another process holds a lease on the file. The system asks it to give up the lease and revokes
  // the lease after a while: wait for that.
  if (descriptor_ < 0 && errno == EAGAIN) descriptor_ = OpenForReading(bytes.get(), keepTime);
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
    close(descriptor_);  // closed even when interrupted
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
    if (offset + done == size_) break;  // the end of the file: no further read is needed
  }
  return done;
}

}  // namespace posix_host
