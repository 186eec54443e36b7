#include "detectors/native/native.h"
#include "tests/samples/sample.h"

namespace typescout::tests {

std::vector<Sample> NativeSamples() { return {}; }

}  // namespace typescout::tests
