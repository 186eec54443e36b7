// write_samples FOLDER: every sample as a file, named by its number and with its extension.
#include <filesystem>
#include <fstream>
#include <string>

#include "tests/samples/sample.h"
#include "tests/support/compound_writer.h"

int main(int argc, char** argv) {
  using namespace typescout::tests;
  if (argc != 2) return 64;
  int count = 0;
  for (const Sample& sample : AllSamples()) {
    const std::filesystem::path extension = std::filesystem::path(sample.path).extension();
    std::filesystem::path file = std::filesystem::path(argv[1]) / std::to_string(count++);
    file += extension;
    std::ofstream(file, std::ios::binary)
        << (sample.streams.empty() ? sample.bytes : WriteCompound(sample.streams));
  }
  return 0;
}
