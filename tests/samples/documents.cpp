#include "detectors/documents/documents.h"
#include "tests/samples/sample.h"

namespace typescout::tests {

std::vector<Sample> DocumentSamples() { return {}; }

}  // namespace typescout::tests
