// What the PostScript detectors share about Illustrator documents.
#ifndef TYPESCOUT_DETECTORS_POSTSCRIPT_ILLUSTRATOR_H
#define TYPESCOUT_DETECTORS_POSTSCRIPT_ILLUSTRATOR_H

#include "core/byte_view.h"

namespace typescout {

// The start of a DOS EPS binary file: a header that tells where the PostScript text and a preview
// picture lie. Adobe Technical Note 5002, "Encapsulated PostScript File Format Specification", 5.2.
inline constexpr char DOS_EPS_MAGIC[] = "\xC5\xD0\xD3\xC6";

// Whether the comments of the PostScript text `head` name a creator (not necessarily Illustrator)
// whose version lies above 0 and is at most 8.0. The version is the first number with a point in
// the first creator comment, or in the version comment right behind it.
bool IsCreatorVersionAtMost8(ByteView head);

}  // namespace typescout

#endif  // TYPESCOUT_DETECTORS_POSTSCRIPT_ILLUSTRATOR_H
