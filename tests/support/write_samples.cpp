// write_samples FOLDER: every sample as a file of its own name in a folder of its own, 0000 to
// 9999, for tests that ask from other languages.
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "tests/samples/sample.h"
#include "tests/support/compound_writer.h"

int main(int argc, char** argv) {
  if (argc != 2) return 64;
  int count = 0;
  for (const typescout::tests::Sample& sample : typescout::tests::AllSamples()) {
    std::array<char, 16> number;
    std::snprintf(number.data(), number.size(), "%04d", count++);
    const std::filesystem::path folder = std::filesystem::path(argv[1]) / number.data();
    std::filesystem::create_directories(folder);
    const std::filesystem::path name = std::filesystem::path(sample.path).filename();
    std::ofstream(folder / name, std::ios::binary)
        << (sample.streams.empty() ? sample.bytes
                                   : typescout::tests::WriteCompound(sample.streams));
  }
  return 0;
}
