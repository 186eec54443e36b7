#include "detectors/vector/vector.h"
#include "tests/samples/sample.h"

namespace typescout::tests {

std::vector<Sample> VectorSamples() { return {}; }

}  // namespace typescout::tests
