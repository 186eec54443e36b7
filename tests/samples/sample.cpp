#include "tests/samples/sample.h"

#include <algorithm>
#include <iterator>

namespace typescout::tests {

const std::vector<Sample>& AllSamples() {
  static const std::vector<Sample> SAMPLES = [] {
    std::vector<Sample> all;
    for (auto family : {RasterSamples, PostscriptSamples, VectorSamples, MediaSamples, NativeSamples, DocumentSamples}) {
      std::vector<Sample> samples = family();
      std::move(samples.begin(), samples.end(), std::back_inserter(all));
    }
    return all;
  }();
  return SAMPLES;
}

std::string Patch(std::string text, std::size_t at, const std::string& patch) {
  text.resize(std::max(text.size(), at + patch.size()));
  return text.replace(at, patch.size(), patch);
}

}  // namespace typescout::tests
