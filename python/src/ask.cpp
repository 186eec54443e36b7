#include "python/src/ask.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <exception>
#include <new>
#include <utility>

#include "catalogue/content.h"
#include "python/src/temporary_name.h"
#include "typescout/typescout.h"

namespace typescout::python {
namespace {

constexpr std::size_t LONGEST_PATH = TYPESCOUT_PATH_LIMIT;

Outcome Failed(int error, std::string reason = {}) {
  Outcome outcome;
  outcome.error = error;
  outcome.reason = std::move(reason);
  return outcome;
}

Path FromAscii(const std::string& path) { return {path, {path.begin(), path.end()}}; }

// The file's first bytes, when the library has no answer. All that the library reads is read, so
// that an error in the middle shows, too. `*error`: 0 when the file can be read, else an errno.
std::string ReadBeginning(const std::string& path, int* error) {
  std::array<char, catalogue::HEAD_SIZE> head;
  struct stat status;
  *error = 0;
  if (stat(path.c_str(), &status) != 0) {
    *error = errno;
  } else if (!S_ISREG(status.st_mode)) {
    *error = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
  }
  if (*error != 0) return {};
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  const ssize_t count = descriptor < 0 ? -1 : read(descriptor, head.data(), head.size());
  if (count < 0) *error = errno;
  if (descriptor >= 0) close(descriptor);
  return {head.data(),
          std::min(static_cast<std::size_t>(std::max<ssize_t>(count, 0)), Question::BEGINNING)};
}

// `shown` is the path or name that the caller gave.
Outcome Ask(const Path& path, std::string_view shown, const Question& question) {
  if (path.wide.size() > LONGEST_PATH) return Failed(ENAMETOOLONG);
  Outcome outcome;
  try {
    const auto readBeginning = [&path, &outcome] {
      return ReadBeginning(path.bytes, &outcome.error);
    };
    const auto [answer, best] =
        question.Ask(path.wide.c_str(), catalogue::ExtensionOf(shown), readBeginning);
    outcome.answer = answer;
    outcome.best = best;
  } catch (int) {
    outcome = Failed(EIO, "The file became shorter while it was read");
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    outcome = Failed(EIO, std::string("An import module failed: ") + error.what());
  } catch (...) {
    outcome = Failed(EIO, "An import module failed");
  }
  return outcome;
}

}  // namespace

Outcome AskAboutFile(const Path& path, const Question& question) {
  if (path.wide.size() <= LONGEST_PATH) return Ask(path, path.bytes, question);
  // First, whether there is a file: a link to what is missing would not tell.
  struct stat status;
  if (stat(path.bytes.c_str(), &status) != 0) return Failed(errno);
  const TemporaryName link = TemporaryName::ForLongPath(path.bytes);
  if (link.error() != 0) return Failed(ENAMETOOLONG);
  return Ask(FromAscii(link.path()), path.bytes, question);
}

Outcome AskAboutContent(std::string_view content, std::string_view name, const Question& question) {
  const std::string_view head = content.substr(0, catalogue::HEAD_SIZE);
  const TemporaryName file =
      TemporaryName::ForContent(catalogue::IsReadBeyondHead(head) ? content : head, name);
  if (file.error() != 0) {
    return Failed(file.error(), "No temporary file could be written");
  }
  return Ask(FromAscii(file.path()), name, question);
}

}  // namespace typescout::python
