// PDF files that carry the data of an Illustrator document. The header is read here (ISO 32000-1,
// 7.5.2); the suite's PDF import module examines the rest.
#include <optional>

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

// The answer flags; none when the module has no answer. What the module throws passes through.
std::optional<std::uint32_t> Ask(GetAINativeDataFunction getAINativeData, const wchar_t* path) {
  constexpr std::int32_t ONE = 1;
  AINativeDataQuery query;
  if (!query.strings.IsValid()) return std::nullopt;
  query.path = path;
  query.one = &ONE;
  std::uint32_t flags = 0;
  if (getAINativeData(&query, nullptr, &flags) == 0) return std::nullopt;
  return flags;
}

// The same for the module in the folder of filters, which is loaded for this question alone; none
// when it cannot be asked.
std::optional<std::uint32_t> AskImportModule(const wchar_t* path) {
  if (!HAS_MODULE_LAYOUT) return std::nullopt;
  const auto modulePath = SystemIO::Path::Combine(TvnConfig::INIGetFiltersDir(), L"TvnPDFImport");
  TvnUtils::TvnLibrary library(modulePath);
  std::optional<std::uint32_t> flags;
  library.Load();
  if (library.IsLoaded()) {
    const auto getAINativeData =
        reinterpret_cast<GetAINativeDataFunction>(library.GetSymbol("GetAINativeData"));
    if (getAINativeData != nullptr) flags = Ask(getAINativeData, path);
  }
  library.Unload();
  return flags;
}

}  // namespace

std::int32_t DetectIllustratorPdf(const ProbeContext* probe) {
  if (!HasPdfHeader(Head(probe))) return 0;
  const FilterId requested = RequestedFilter(probe);
  if (requested == ILLUSTRATOR_PDF) return 1;
  if (probe->path == nullptr) return 1;
  const bool isNamedPdf = IsNamedPdf(probe->path);  // first: the module may write to the path
  const std::optional<std::uint32_t> flags = AskImportModule(probe->path);
  if (!flags) return 1;
  if ((*flags & YES_FOR_EVERY_FILTER) != 0) return 1;
  if (requested == FILTER_0519 || requested == ILLUSTRATOR) return 0;
  if ((*flags & YES) != 0) return 1;
  return (*flags & YES_WHEN_NAMED_PDF) != 0 && isNamedPdf;
}

}  // namespace typescout
