// PostScript, PDF and plotter languages.
#ifndef TYPESCOUT_DETECTORS_POSTSCRIPT_POSTSCRIPT_H
#define TYPESCOUT_DETECTORS_POSTSCRIPT_POSTSCRIPT_H

#include "core/probe_context.h"

namespace typescout {

std::int32_t DetectEps(const ProbeContext* probe);             // 0x0509
std::int32_t DetectPostScript(const ProbeContext* probe);      // 0x050A, 0x0515
std::int32_t DetectIllustratorPdf(const ProbeContext* probe);  // 0x0535
std::int32_t DetectIllustrator(const ProbeContext* probe);     // 0x0503
std::int32_t DetectHpgl(const ProbeContext* probe);            // 0x0501

}  // namespace typescout

#endif  // TYPESCOUT_DETECTORS_POSTSCRIPT_POSTSCRIPT_H
