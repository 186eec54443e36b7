// Vector drawings, CAD and metafiles: the filter family 0x05 beside the PostScript languages.
#ifndef TYPESCOUT_DETECTORS_VECTOR_VECTOR_H
#define TYPESCOUT_DETECTORS_VECTOR_VECTOR_H

#include "core/probe_context.h"

namespace typescout {

std::int32_t DetectScriptoraGraphics(const ProbeContext* probe);  // 0x0507
std::int32_t DetectWindowsMetafile(const ProbeContext* probe);    // 0x050E
std::int32_t DetectFilter0540(const ProbeContext* probe);         // 0x0540
std::int32_t DetectFilter0504(const ProbeContext* probe);         // 0x0504
std::int32_t DetectCgm(const ProbeContext* probe);                // 0x0500, 0x090B
std::int32_t DetectFilter0502(const ProbeContext* probe);         // 0x0502
std::int32_t DetectDxf(const ProbeContext* probe);                // 0x0510
std::int32_t DetectFilter050B(const ProbeContext* probe);         // 0x050B
std::int32_t DetectPict(const ProbeContext* probe);               // 0x050D
std::int32_t DetectEnhancedMetafile(const ProbeContext* probe);   // 0x0514
std::int32_t DetectTavonMetafile(const ProbeContext* probe);      // 0x050F
std::int32_t DetectFilter0505(const ProbeContext* probe);         // 0x0505
std::int32_t DetectPublisher(const ProbeContext* probe);          // 0x0545
std::int32_t DetectHgb3(const ProbeContext* probe);               // 0x0513
std::int32_t DetectFilter0536(const ProbeContext* probe);         // 0x0536
std::int32_t DetectVisio(const ProbeContext* probe);              // 0x0523
std::int32_t DetectSvg(const ProbeContext* probe);                // 0x0541
std::int32_t DetectDwg(const ProbeContext* probe);                // 0x0530
std::int32_t DetectMakerVector(const ProbeContext* probe);        // 0x0531
std::int32_t DetectOpsHeader(const ProbeContext* probe);          // 0x0544

}  // namespace typescout

#endif  // TYPESCOUT_DETECTORS_VECTOR_VECTOR_H
