// Word-processor documents and plain text: the filter families 0x08 and 0x09.
#ifndef TYPESCOUT_DETECTORS_DOCUMENTS_DOCUMENTS_H
#define TYPESCOUT_DETECTORS_DOCUMENTS_DOCUMENTS_H

#include "core/probe_context.h"

namespace typescout {

std::int32_t DetectScriptora0807(const ProbeContext* probe);      // 0x0807
std::int32_t DetectScriptora0808(const ProbeContext* probe);      // 0x0808
std::int32_t DetectScriptora0809(const ProbeContext* probe);      // 0x0809
std::int32_t DetectWordDocument8(const ProbeContext* probe);      // 0x0814
std::int32_t DetectWordDocument6(const ProbeContext* probe);      // 0x0801
std::int32_t DetectFilter0802(const ProbeContext* probe);         // 0x0802
std::int32_t DetectFilter0803(const ProbeContext* probe);         // 0x0803
std::int32_t DetectFilter0804(const ProbeContext* probe);         // 0x0804
std::int32_t DetectRtf(const ProbeContext* probe);                // 0x0805
std::int32_t DetectFilter080B(const ProbeContext* probe);         // 0x080B
std::int32_t DetectFilter080C(const ProbeContext* probe);         // 0x080C
std::int32_t DetectWs2000(const ProbeContext* probe);             // 0x080D
std::int32_t DetectGuillemetCommands(const ProbeContext* probe);  // 0x080E
std::int32_t DetectVerHeader(const ProbeContext* probe);          // 0x080F
std::int32_t DetectFilter0812(const ProbeContext* probe);         // 0x0812
std::int32_t DetectFilter0813(const ProbeContext* probe);         // 0x0813
std::int32_t DetectShortLineText(const ProbeContext* probe);      // 0x0903, 0x0904, 0x0900
std::int32_t DetectAnyText(const ProbeContext* probe);            // 0x0901
std::int32_t DetectSevenBitText(const ProbeContext* probe);       // 0x0902

}  // namespace typescout

#endif  // TYPESCOUT_DETECTORS_DOCUMENTS_DOCUMENTS_H
