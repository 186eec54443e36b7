#include "detectors/media/media.h"
#include "tests/samples/sample.h"

namespace typescout::tests {

std::vector<Sample> MediaSamples() { return {}; }

}  // namespace typescout::tests
