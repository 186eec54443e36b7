// TvnPDFImport: the module that knows whether a PDF file carries the data of an Illustrator
// document.
#include <cstdint>
#include <optional>

#include "detectors/postscript/ai_native_data.h"
#include "host/posix/regular_file.h"
#include "modules/pdf_import/illustrator_data.h"

// 1 with the answer in `*flags` when the file could be read: CARRIES_ILLUSTRATOR_DATA when it does,
// else nothing. 0, and nothing in `*flags`, when it could not: no PDF file, damaged, encrypted by a
// password, too much work. The caller owns the arguments; of the query only the path is looked at,
// and its strings stay as they are. Throws nothing; may be called from all threads.
extern "C" [[gnu::visibility("default")]] std::int32_t GetAINativeData(
    typescout::AINativeDataQuery* query, void* /*reserved*/, std::uint32_t* flags) try {
  constexpr std::uint32_t CARRIES_ILLUSTRATOR_DATA = 0x02;
  posix_host::RegularFile file;
  if (query == nullptr || flags == nullptr || !file.Open(query->path)) return 0;
  const std::optional<bool> answer = pdf_import::HasIllustratorData(file);
  if (!answer.has_value()) return 0;
  if (*answer) *flags |= CARRIES_ILLUSTRATOR_DATA;
  return 1;
} catch (...) {
  return 0;
}
