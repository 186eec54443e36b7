// Replaces the graphics library in a build without one.
#include "host/graphics.h"

bool BUDI_IsBUDI(TvnUtils::Stream /*stream*/) { return false; }
