// Windows executables, which hold icons, cursors and bitmaps among their resources.
#ifndef TYPESCOUT_DETECTORS_RASTER_WINDOWS_EXECUTABLE_H
#define TYPESCOUT_DETECTORS_RASTER_WINDOWS_EXECUTABLE_H

#include "core/byte_view.h"

namespace typescout {

// Whether the file is an executable for Windows: one of 16 bits ("NE") that expects Windows 3.0 or
// later, or a portable one ("PE"). Microsoft, "Executable-file header format" and "PE format".
bool IsWindowsExecutable(const ByteView& head);

}  // namespace typescout

#endif  // TYPESCOUT_DETECTORS_RASTER_WINDOWS_EXECUTABLE_H
