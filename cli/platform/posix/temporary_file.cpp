#include "cli/platform/temporary_file.h"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <mutex>

#include "cli/platform/folders.h"
#include "cli/platform/posix/descriptors.h"
#include "cli/platform/system.h"

namespace typescout::cli::platform {
namespace {

std::mutex mutex;
std::string named;  // the path of the file that has a name; empty for none

}  // namespace

void RemoveTemporaryFile() {
  const std::lock_guard<std::mutex> lock(mutex);
  if (!named.empty()) unlink(named.c_str());
  named.clear();
}

std::string TemporaryFolder() {
  const std::string folder = Environment("TMPDIR");
  return folder.empty() ? "/tmp" : folder;
}

TemporaryFile::TemporaryFile(std::string_view extension) {
  std::string ending;
  if (!extension.empty()) ending.append(".").append(extension);
  path_ = JoinPath(TemporaryFolder(), "typescout-XXXXXX") + ending;
  const std::lock_guard<std::mutex> lock(mutex);
  handle_ = mkostemps(path_.data(), static_cast<int>(ending.size()), O_CLOEXEC);
  if (handle_ < 0) {
    error_ = errno;
    return;
  }
  // The extension is something that the library looks at; without one no name is needed.
  if (extension.empty() && HasDescriptorFolder()) {
    unlink(path_.c_str());
    path_ = DescriptorPath(static_cast<int>(handle_));
  } else {
    named = path_;
  }
}

TemporaryFile::~TemporaryFile() {
  if (handle_ >= 0) close(static_cast<int>(handle_));
  RemoveTemporaryFile();
}

void TemporaryFile::Append(std::string_view bytes) {
  while (error_ == 0 && !bytes.empty()) {
    const ssize_t count = write(static_cast<int>(handle_), bytes.data(), bytes.size());
    if (count >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      error_ = errno;
    }
  }
}

int TemporaryFile::Finish() { return error_; }

}  // namespace typescout::cli::platform
