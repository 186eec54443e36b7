// Raster pictures: the filter family 0x03, and the animated GIF 0x0616.
#ifndef TYPESCOUT_DETECTORS_RASTER_RASTER_H
#define TYPESCOUT_DETECTORS_RASTER_RASTER_H

#include "core/probe_context.h"

namespace typescout {

std::int32_t DetectWindowsBitmap(const ProbeContext* probe);       // 0x0301
std::int32_t DetectGif(const ProbeContext* probe);                 // 0x0305
std::int32_t DetectJpeg(const ProbeContext* probe);                // 0x0306
std::int32_t DetectOs2Bitmap(const ProbeContext* probe);           // 0x0318
std::int32_t DetectJpeg2000(const ProbeContext* probe);            // 0x0334
std::int32_t DetectTarga(const ProbeContext* probe);               // 0x0303
std::int32_t DetectPcx(const ProbeContext* probe);                 // 0x0302
std::int32_t DetectScitexCt(const ProbeContext* probe);            // 0x0308
std::int32_t DetectTiff(const ProbeContext* probe);                // 0x0304
std::int32_t DetectCursorResource(const ProbeContext* probe);      // 0x0311
std::int32_t DetectIconResource(const ProbeContext* probe);        // 0x0310
std::int32_t DetectExecutableResource(const ProbeContext* probe);  // 0x0312
std::int32_t DetectPhotoshop(const ProbeContext* probe);           // 0x0314
std::int32_t DetectCameraRaw(const ProbeContext* probe);           // 0x0337
std::int32_t DetectMacPaint(const ProbeContext* probe);            // 0x0317
std::int32_t DetectFilter0320(const ProbeContext* probe);          // 0x0320
std::int32_t DetectPaintEps(const ProbeContext* probe);            // 0x0324
std::int32_t DetectPng(const ProbeContext* probe);                 // 0x0322
std::int32_t DetectWebP(const ProbeContext* probe);                // 0x0339, 0x0339
std::int32_t DetectFilter0327(const ProbeContext* probe);          // 0x0327
std::int32_t DetectXpm(const ProbeContext* probe);                 // 0x0329
std::int32_t DetectGimpXcf(const ProbeContext* probe);             // 0x0330
std::int32_t DetectPortableAnymap(const ProbeContext* probe);      // 0x0331
std::int32_t DetectAnimatedGif(const ProbeContext* probe);         // 0x0616
std::int32_t DetectGemImage(const ProbeContext* probe);            // 0x0313

}  // namespace typescout

#endif  // TYPESCOUT_DETECTORS_RASTER_RASTER_H
