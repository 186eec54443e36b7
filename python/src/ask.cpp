#include "python/src/ask.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <exception>
#include <new>
#include <numeric>
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

int AskRows(const std::wstring& path, const std::vector<int>& rows, int requested) {
  // The function takes pointers to what it never writes.
  return CheckFiltersFromList(const_cast<wchar_t*>(path.c_str()), const_cast<int*>(rows.data()),
                              static_cast<int>(rows.size()), 0, nullptr, requested);
}

int FirstAnswer(const std::wstring& path, const Question& question) {
  if (!question.rows.empty()) return AskRows(path, question.rows, question.requested);
  if (question.requested == 0) return TypeScoutFile(path.c_str());
  std::vector<int> all(catalogue::Filters().size());
  std::iota(all.begin(), all.end(), 0);
  return AskRows(path, all, question.requested);
}

// Why the library has no answer: 0 when the file can be read, else an errno.
int WhyNoAnswer(const std::string& path) {
  struct stat status;
  if (stat(path.c_str(), &status) != 0) return errno;
  if (S_ISDIR(status.st_mode)) return EISDIR;
  if (!S_ISREG(status.st_mode)) return EINVAL;
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) return errno;
  std::array<char, catalogue::HEAD_SIZE> head;
  const int error = read(descriptor, head.data(), head.size()) < 0 ? errno : 0;
  close(descriptor);
  return error;
}

// `shown` is the path or name that the caller gave.
Outcome Ask(const Path& path, std::string_view shown, const Question& question) {
  if (path.wide.size() > LONGEST_PATH) return Failed(ENAMETOOLONG);
  Outcome outcome;
  try {
    const int id = FirstAnswer(path.wide, question);
    if (id == 0) return Failed(WhyNoAnswer(path.bytes));
    outcome.answer = outcome.best = catalogue::FindFilter(id);
    const std::vector<int> better = catalogue::RowsThatDescribeBetter(
        *outcome.answer, catalogue::ExtensionOf(shown), question.rows);
    if (better.empty()) return outcome;
    if (const int best = AskRows(path.wide, better, question.requested); best != 0) {
      outcome.best = catalogue::FindFilter(best);
    }
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
