#include "detectors/raster/raster.h"
#include "tests/samples/sample.h"

namespace typescout::tests {

std::vector<Sample> RasterSamples() { return {}; }

}  // namespace typescout::tests
