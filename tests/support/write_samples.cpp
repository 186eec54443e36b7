// write_samples FOLDER: every sample as a file of its own name in a folder of its own, 0000 to
// 9999, for tests that ask from other languages. write_samples --seeds FOLDER: as seeds of the fuzz
// targets, one folder a target.
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "fuzz/choices.h"
#include "tests/samples/sample.h"
#include "tests/support/documents.h"

namespace {

void Write(const std::filesystem::path& file, const std::string& bytes) {
  std::filesystem::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary) << bytes;
}

}  // namespace

int main(int argc, char** argv) {
  const bool asSeeds = argc == 3 && argv[1] == std::string_view("--seeds");
  if (argc != 2 && !asSeeds) return 64;
  const std::filesystem::path folder = argv[argc - 1];
  int count = 0;
  for (const typescout::tests::Sample& sample : typescout::tests::AllSamples()) {
    std::array<char, 16> number;
    std::snprintf(number.data(), number.size(), "%04d", count++);
    const std::string bytes = typescout::tests::FileBytes(sample);
    if (!asSeeds) {
      Write(folder / number.data() / std::filesystem::path(sample.path).filename(), bytes);
      continue;
    }
    // Behind the file, what else the target of whole calls chooses: a plain call.
    Write(folder / "calls" / number.data(), bytes + std::string(fuzz::CHOICE_COUNT, '\0'));
    if (!sample.streams.empty()) Write(folder / "compound" / number.data(), bytes);
  }
  return 0;
}
