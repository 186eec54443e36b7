#include "python/src/temporary_name.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <utility>

namespace typescout::python {
namespace {

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c > 0; });
}

// ASCII, so that it is the same in wide characters.
std::string TemporaryFolder() {
  const char* set = secure_getenv("TMPDIR");
  return set != nullptr && *set == '/' && IsAscii(set) ? set : "/tmp";
}

// From the last dot of the last component on. No row looks for one that is long or not ASCII.
std::string_view Extension(std::string_view name) {
  constexpr std::size_t LONGEST = 32;
  name.remove_prefix(name.find_last_of("/\\") + 1);
  const std::size_t dot = name.rfind('.');
  if (dot == std::string_view::npos || name.size() - dot > LONGEST) return {};
  name.remove_prefix(dot);
  return IsAscii(name) ? name : std::string_view();
}

bool WriteAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

}  // namespace

TemporaryName::TemporaryName(TemporaryName&& other) noexcept
    : folder_(std::exchange(other.folder_, {})),
      path_(std::exchange(other.path_, {})),
      error_(other.error_) {}

TemporaryName::~TemporaryName() {
  if (!path_.empty()) unlink(path_.c_str());
  if (!folder_.empty()) rmdir(folder_.c_str());
}

void TemporaryName::Fail() {
  error_ = errno;
  path_.clear();
}

bool TemporaryName::MakeFolder(std::string_view name) {
  std::string folder = TemporaryFolder() + "/typescout-XXXXXX";
  if (mkdtemp(folder.data()) == nullptr) {
    Fail();
    return false;
  }
  folder_ = std::move(folder);
  path_ = folder_ + "/file";
  path_ += Extension(name);
  return true;
}

TemporaryName TemporaryName::ForContent(std::string_view content, std::string_view name) {
  TemporaryName file;
  if (!file.MakeFolder(name)) return file;
  const int descriptor =
      open(file.path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600);
  if (descriptor < 0 || !WriteAll(descriptor, content)) {
    const int error = errno;
    unlink(file.path_.c_str());
    errno = error;
    file.Fail();
  }
  if (descriptor >= 0) close(descriptor);
  return file;
}

TemporaryName TemporaryName::ForLongPath(const std::string& path) {
  TemporaryName link;
  std::string target = path;
  if (!path.starts_with('/')) {
    std::array<char, PATH_MAX> current;
    if (getcwd(current.data(), current.size()) == nullptr) {
      link.Fail();
      return link;
    }
    target = current.data() + ('/' + path);
  }
  if (!link.MakeFolder(path)) return link;
  if (symlink(target.c_str(), link.path_.c_str()) != 0) link.Fail();
  return link;
}

}  // namespace typescout::python
