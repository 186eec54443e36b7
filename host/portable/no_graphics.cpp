// Stands in for the graphics library where a build has none.
#include "host/graphics.h"

bool BUDI_IsBUDI(TvnUtils::Stream /*stream*/) { return false; }
