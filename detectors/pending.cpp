// Rows whose formats are still to be written: they answer no until then.
#include "detectors/native/native.h"
#include "detectors/postscript/postscript.h"
#include "detectors/raster/raster.h"

namespace typescout {

// NOLINTBEGIN
#define PENDING(detector) \
  std::int32_t detector(const ProbeContext*) { return 0; }

// raster
PENDING(DetectWindowsBitmap)
PENDING(DetectGif)
PENDING(DetectJpeg)
PENDING(DetectOs2Bitmap)
PENDING(DetectJpeg2000)
PENDING(DetectTarga)
PENDING(DetectPcx)
PENDING(DetectScitexCt)
PENDING(DetectTiff)
PENDING(DetectCursorResource)
PENDING(DetectIconResource)
PENDING(DetectExecutableResource)
PENDING(DetectPhotoshop)
PENDING(DetectCameraRaw)
PENDING(DetectMacPaint)
PENDING(DetectFilter0320)
PENDING(DetectPaintEps)
PENDING(DetectPng)
PENDING(DetectWebP)
PENDING(DetectFilter0327)
PENDING(DetectXpm)
PENDING(DetectGimpXcf)
PENDING(DetectPortableAnymap)
PENDING(DetectAnimatedGif)
PENDING(DetectGemImage)
// postscript
PENDING(DetectEps)
PENDING(DetectPostScript)
PENDING(DetectIllustratorPdf)
PENDING(DetectIllustrator)
PENDING(DetectHpgl)
// native
PENDING(DetectPaintImage)
PENDING(DetectNativeDrawing)
PENDING(DetectTarForm)
PENDING(DetectTechnicalDrawing)
PENDING(DetectSymbolLibrary)
PENDING(DetectVxrComp1)
PENDING(DetectVxrComp2)
PENDING(DetectBudi)
// NOLINTEND

}  // namespace typescout
