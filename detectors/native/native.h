// The suite's own formats: the filter family 0x07.
#ifndef TYPESCOUT_DETECTORS_NATIVE_NATIVE_H
#define TYPESCOUT_DETECTORS_NATIVE_NATIVE_H

#include "core/probe_context.h"

namespace typescout {

std::int32_t DetectPaintImage(const ProbeContext* probe);        // 0x0710
std::int32_t DetectNativeDrawing(const ProbeContext* probe);     // 0x0703
std::int32_t DetectTarForm(const ProbeContext* probe);           // 0x070A
std::int32_t DetectTechnicalDrawing(const ProbeContext* probe);  // 0x070D
std::int32_t DetectSymbolLibrary(const ProbeContext* probe);     // 0x0712
std::int32_t DetectVxrComp1(const ProbeContext* probe);          // 0x0704
std::int32_t DetectVxrComp2(const ProbeContext* probe);          // 0x0705
std::int32_t DetectBudi(const ProbeContext* probe);              // 0x0713, 0x0701, 0x0702

}  // namespace typescout

#endif  // TYPESCOUT_DETECTORS_NATIVE_NATIVE_H
