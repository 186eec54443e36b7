// What the PostScript detectors share about Illustrator documents.
#ifndef TYPESCOUT_DETECTORS_POSTSCRIPT_ILLUSTRATOR_H
#define TYPESCOUT_DETECTORS_POSTSCRIPT_ILLUSTRATOR_H

#include "core/probe_context.h"

namespace typescout {

// The filter of Illustrator documents that are PostScript.
inline constexpr FilterId ILLUSTRATOR = 0x0503;

// Whether the file is such a document and its comments name a creator (not necessarily Illustrator)
// whose version lies above 0 and is at most 8.0. The version is the first number with a point in
// the first creator comment, or in the version comment right behind it.
bool IsIllustratorUpToVersion8(const ProbeContext* probe);

}  // namespace typescout

#endif  // TYPESCOUT_DETECTORS_POSTSCRIPT_ILLUSTRATOR_H
