// TvnPDFImport: the module that finds out whether a PDF file carries the data of an Illustrator
// document.
#include <sys/stat.h>

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>

#include "detectors/postscript/ai_native_data.h"
#include "host/posix/regular_file.h"
#include "host/posix/wide_path.h"
#include "modules/pdf_import/illustrator_data.h"
#include "typescout/typescout.h"

namespace pdf_import {
namespace {

// Examining a document takes a hundred times as long as examining another file, and a scan asks
// about it several times in a row. So the last answer is kept, for each thread.

// A file's identity and time of change. Every change to the file changes them, except one within
// the same tick of the file system's clock.
struct Stamp {
  dev_t device = 0;
  ino_t number = 0;
  off_t size = 0;
  std::time_t seconds = 0;
  long nanoseconds = 0;

  bool operator==(const Stamp&) const = default;
};

Stamp StampOf(const posix_host::PathBytes& path) {
  struct stat status;
  if (path.get() == nullptr || stat(path.get(), &status) != 0) return {};
  return {status.st_dev, status.st_ino, status.st_size, status.st_ctim.tv_sec,
          status.st_ctim.tv_nsec};
}

// Whether the file was last changed before the current tick, on every file system.
bool IsSettled(const Stamp& stamp) {
  constexpr std::time_t COARSEST_TICK = 2;
  return stamp.number != 0 && stamp.seconds + COARSEST_TICK < std::time(nullptr);
}

struct Answer {
  Stamp file;
  bool hasIllustratorData = false;
};
thread_local Answer lastAnswer;

// None when it is not known.
std::optional<bool> AnswerFor(const wchar_t* path) {
  const posix_host::PathBytes bytes(path);
  const Stamp stamp = StampOf(bytes);
  const bool isSettled = IsSettled(stamp);
  if (isSettled && stamp == lastAnswer.file) return lastAnswer.hasIllustratorData;
  posix_host::RegularFile file;
  if (!file.Open(path)) return std::nullopt;
  const std::optional<bool> answer = HasIllustratorData(file);
  if (answer.has_value() && isSettled && StampOf(bytes) == stamp) lastAnswer = {stamp, *answer};
  return answer;
}

}  // namespace
}  // namespace pdf_import

// 1 with the answer in `*flags` when the file could be read: CARRIES_ILLUSTRATOR_DATA when it does,
// else nothing. 0, and nothing in `*flags`, when it could not: no PDF file, damaged, encrypted by a
// password, too much work. The caller owns the arguments; of the query only the path is looked at,
// and its strings stay as they are. Throws nothing; may be called from all threads.
extern "C" [[gnu::visibility("default")]] std::int32_t GetAINativeData(
    typescout::AINativeDataQuery* query, void* /*reserved*/, std::uint32_t* flags) try {
  constexpr std::uint32_t CARRIES_ILLUSTRATOR_DATA = 0x02;
  if (query == nullptr || flags == nullptr) return 0;
  const std::optional<bool> answer = pdf_import::AnswerFor(query->path);
  if (!answer.has_value()) return 0;
  if (*answer) *flags |= CARRIES_ILLUSTRATOR_DATA;
  return 1;
} catch (...) {
  return 0;
}

// The module's version and its library's; belongs to the module.
extern "C" [[gnu::visibility("default")]] const char* TypeScoutModuleVersion() {
  static const std::string version = TYPESCOUT_VERSION_STRING ", qpdf " + pdf_import::QpdfVersion();
  return version.c_str();
}
