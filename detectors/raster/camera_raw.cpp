// The raw files of digital cameras. There are too many kinds for signatures, so the suite's decoder,
// a module, is asked.
#include "detectors/raster/raster.h"
#include "host/library.h"
#include "host/path.h"

namespace typescout {
namespace {

// Files of the suite's technical-drawing program. The decoder would accept some of them.
bool IsTechnicalDrawing(const wchar_t* path) {
  const TvnPlatform::TvnStringT<wchar_t> extension = SystemIO::Path::GetUpperExtension(path);
  const std::wstring_view name = extension.View();
  return name == L".ZRF" || name == L".ZRW" || name == L".ZR4";
}

}  // namespace

std::int32_t DetectCameraRaw(const ProbeContext* probe) {
  using CheckForRaw = int (*)(const wchar_t* path);  // positive: yes
  if (probe->path == nullptr || IsTechnicalDrawing(probe->path)) return 0;
  TvnUtils::TvnLibrary decoder(TvnPlatform::TvnStringT<wchar_t>(L"DCRaw"));
  if (!decoder.Load()) return 0;
  const auto checkForRaw = reinterpret_cast<CheckForRaw>(decoder.GetSymbol("CheckForRaw"));
  const bool isRaw = checkForRaw != nullptr && checkForRaw(probe->path) > 0;
  decoder.Unload();
  return isRaw;
}

}  // namespace typescout
