// Rows whose formats are still to be written: they answer no until then.
#include "detectors/documents/documents.h"
#include "detectors/media/media.h"
#include "detectors/vector/vector.h"

namespace typescout {

// NOLINTBEGIN
#define PENDING(detector) \
  std::int32_t detector(const ProbeContext*) { return 0; }

// vector
PENDING(DetectScriptoraGraphics)
PENDING(DetectWindowsMetafile)
PENDING(DetectFilter0540)
PENDING(DetectFilter0504)
PENDING(DetectCgm)
PENDING(DetectFilter0502)
PENDING(DetectDxf)
PENDING(DetectFilter050B)
PENDING(DetectPict)
PENDING(DetectEnhancedMetafile)
PENDING(DetectTavonMetafile)
PENDING(DetectFilter0505)
PENDING(DetectPublisher)
PENDING(DetectHgb3)
PENDING(DetectFilter0536)
PENDING(DetectVisio)
PENDING(DetectSvg)
PENDING(DetectDwg)
PENDING(DetectMakerVector)
PENDING(DetectOpsHeader)
// media
PENDING(DetectAvi)
PENDING(DetectFlic)
PENDING(DetectMpeg)
PENDING(DetectAnimatedCursor)
PENDING(Detect3dmfOrVrml)
PENDING(DetectHgb1)
PENDING(DetectHtml)
PENDING(DetectWave)
PENDING(DetectCreativeVoice)
PENDING(DetectMacBinarySound)
PENDING(DetectAiff)
PENDING(Detect8Svx)
PENDING(DetectMidi)
PENDING(DetectSunAudio)
// documents
PENDING(DetectScriptora0807)
PENDING(DetectScriptora0808)
PENDING(DetectScriptora0809)
PENDING(DetectWordDocument8)
PENDING(DetectWordDocument6)
PENDING(DetectFilter0802)
PENDING(DetectFilter0803)
PENDING(DetectFilter0804)
PENDING(DetectRtf)
PENDING(DetectFilter080B)
PENDING(DetectFilter080C)
PENDING(DetectWs2000)
PENDING(DetectGuillemetCommands)
PENDING(DetectVerHeader)
PENDING(DetectFilter0812)
PENDING(DetectFilter0813)
PENDING(DetectShortLineText)
PENDING(DetectAnyText)
PENDING(DetectSevenBitText)
// NOLINTEND

}  // namespace typescout
