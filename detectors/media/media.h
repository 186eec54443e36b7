// Video, animation, sound, web pages and 3D scenes: the filter family 0x06.
#ifndef TYPESCOUT_DETECTORS_MEDIA_MEDIA_H
#define TYPESCOUT_DETECTORS_MEDIA_MEDIA_H

#include "core/probe_context.h"

namespace typescout {

std::int32_t DetectAvi(const ProbeContext* probe);             // 0x0600
std::int32_t DetectFlic(const ProbeContext* probe);            // 0x0607
std::int32_t DetectMpeg(const ProbeContext* probe);            // 0x060F
std::int32_t DetectAnimatedCursor(const ProbeContext* probe);  // 0x0614
std::int32_t Detect3dmfOrVrml(const ProbeContext* probe);      // 0x0617
std::int32_t DetectHgb1(const ProbeContext* probe);            // 0x060B
std::int32_t DetectHtml(const ProbeContext* probe);            // 0x0615
std::int32_t DetectWave(const ProbeContext* probe);            // 0x0601
std::int32_t DetectCreativeVoice(const ProbeContext* probe);   // 0x0602
std::int32_t DetectMacBinarySound(const ProbeContext* probe);  // 0x0608
std::int32_t DetectAiff(const ProbeContext* probe);            // 0x0609
std::int32_t Detect8Svx(const ProbeContext* probe);            // 0x060A
std::int32_t DetectMidi(const ProbeContext* probe);            // 0x0611
std::int32_t DetectSunAudio(const ProbeContext* probe);        // 0x0613

}  // namespace typescout

#endif  // TYPESCOUT_DETECTORS_MEDIA_MEDIA_H
