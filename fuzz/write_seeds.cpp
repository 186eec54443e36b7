// write_seeds FOLDER: the samples as seeds for the fuzz targets, one folder a target below FOLDER.
#include <filesystem>
#include <fstream>
#include <string>

#include "fuzz/choices.h"
#include "tests/samples/sample.h"
#include "tests/support/compound_writer.h"

namespace {

namespace tests = typescout::tests;

void Write(const std::filesystem::path& file, const std::string& bytes) {
  std::filesystem::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary) << bytes;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 64;
  const std::filesystem::path folder = argv[1];
  int count = 0;
  for (const tests::Sample& sample : tests::AllSamples()) {
    const std::string name = std::to_string(count++);
    const std::string bytes =
        sample.streams.empty() ? sample.bytes : tests::WriteCompound(sample.streams);
    Write(folder / "calls" / name, bytes + std::string(fuzz::CHOICE_COUNT, '\0'));
    if (!sample.streams.empty()) {
      Write(folder / "compound" / name, bytes);
    }
  }
  return 0;
}
