#include "detectors/postscript/postscript.h"
#include "tests/samples/sample.h"

namespace typescout::tests {

std::vector<Sample> PostscriptSamples() { return {}; }

}  // namespace typescout::tests
