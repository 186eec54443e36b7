// The suite's graphics library, of which one function is used.
#ifndef TYPESCOUT_HOST_GRAPHICS_H
#define TYPESCOUT_HOST_GRAPHICS_H

#include "host/memory_stream.h"

// Whether the stream, read from its start, holds a BUDI file. A build without the graphics library
// answers false for every file; the CMake option TYPESCOUT_GRAPHICS_LIBRARY names one to link.
bool BUDI_IsBUDI(TvnUtils::Stream stream);

#endif  // TYPESCOUT_HOST_GRAPHICS_H
