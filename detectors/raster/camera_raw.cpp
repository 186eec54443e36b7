// The raw files of digital cameras. There are too many kinds for signatures, so the suite's
// decoder, a module, is asked.
#include "core/suite_modules.h"
#include "detectors/ask_module.h"
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

struct Question {
  void Ask() { isRaw = checkForRaw(path) > 0; }

  const wchar_t* path;
  TvnUtils::TvnLibrary decoder{TvnPlatform::TvnStringT<wchar_t>(CAMERA_RAW_MODULE.name)};
  int (*checkForRaw)(const wchar_t* path) = nullptr;  // positive: yes
  bool isRaw = false;
};

}  // namespace

std::int32_t DetectCameraRaw(const ProbeContext* probe) {
  if (probe->path == nullptr || IsTechnicalDrawing(probe->path)) return 0;
  Question question = {.path = probe->path};
  if (!question.decoder.Load()) return 0;
  question.checkForRaw = reinterpret_cast<decltype(question.checkForRaw)>(
      question.decoder.GetSymbol(CAMERA_RAW_MODULE.function));
  if (question.checkForRaw != nullptr) AskModule(&question, probe);
  question.decoder.Unload();
  return question.isRaw;
}

}  // namespace typescout
