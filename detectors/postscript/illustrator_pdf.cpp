// PDF files that carry the data of an Illustrator document. The header is read here (ISO 32000-1,
// 7.5.2); the suite's PDF import module examines the rest.
#include <optional>

#include "core/suite_modules.h"
#include "detectors/ask_module.h"
#include "detectors/postscript/ai_native_data.h"
#include "detectors/postscript/illustrator.h"
#include "detectors/postscript/postscript.h"
#include "host/config.h"
#include "host/library.h"
#include "host/path.h"

namespace typescout {
namespace {

constexpr FilterId FILTER_0519 = 0x0519;
constexpr FilterId ILLUSTRATOR_PDF = 0x0535;

// The module's answer flags, named after what they mean for this detector.
constexpr std::uint32_t YES_FOR_EVERY_FILTER = 0x80;
constexpr std::uint32_t YES = 0x02;
constexpr std::uint32_t YES_WHEN_NAMED_PDF = 0x10;

bool HasPdfHeader(ByteView head) { return head.size() >= 6 && head.Matches(0, "%PDF-"); }

bool IsNamedPdf(const wchar_t* path) {
  return SystemIO::Path::GetUpperExtension(path).View() == L".PDF";
}

// What the module is asked. The members are released from the last to the first.
struct Question {
  void Ask() {
    query.emplace();
    if (!query->strings.IsValid()) return;
    constexpr std::int32_t ONE = 1;
    query->path = path;
    query->one = &ONE;
    std::uint32_t answer = 0;
    if (getAINativeData(&*query, nullptr, &answer) != 0) flags = answer;
    query.reset();
  }

  const wchar_t* path;
  TvnPlatform::TvnStringT<wchar_t> modulePath =
      SystemIO::Path::Combine(TvnConfig::INIGetFiltersDir(), PDF_MODULE.name);
  TvnUtils::TvnLibrary library{modulePath};
  GetAINativeDataFunction getAINativeData = nullptr;
  std::optional<AINativeDataQuery> query = {};
  std::optional<std::uint32_t> flags = {};  // none: the module has no answer
};

// The answer flags; none when the module cannot be asked or has no answer. What it throws passes
// through.
std::optional<std::uint32_t> AskImportModule(const ProbeContext* probe) {
  if (!HAS_MODULE_LAYOUT) return std::nullopt;
  Question question = {.path = probe->path};
  TvnUtils::TvnLibrary& library = question.library;
  library.Load();
  if (library.IsLoaded()) {
    question.getAINativeData =
        reinterpret_cast<GetAINativeDataFunction>(library.GetSymbol(PDF_MODULE.function));
    if (question.getAINativeData != nullptr) AskModule(&question, probe);
  }
  library.Unload();
  return question.flags;
}

}  // namespace

std::int32_t DetectIllustratorPdf(const ProbeContext* probe) {
  if (!HasPdfHeader(Head(probe))) return 0;
  const FilterId requested = RequestedFilter(probe);
  if (requested == ILLUSTRATOR_PDF) return 1;
  if (probe->path == nullptr) return 1;
  const bool isNamedPdf = IsNamedPdf(probe->path);  // first: the module may write to the path
  const std::optional<std::uint32_t> flags = AskImportModule(probe);
  if (!flags) return 1;
  if ((*flags & YES_FOR_EVERY_FILTER) != 0) return 1;
  if (requested == FILTER_0519 || requested == ILLUSTRATOR) return 0;
  if ((*flags & YES) != 0) return 1;
  return (*flags & YES_WHEN_NAMED_PDF) != 0 && isNamedPdf;
}

}  // namespace typescout
