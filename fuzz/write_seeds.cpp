// write_seeds FOLDER: the samples as seeds for the fuzz targets, one folder a target below FOLDER.
#include <filesystem>
#include <fstream>
#include <string>

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
  // What the targets read before the file itself: no wish and a plain name, nothing put in between.
  const std::string noWish(1, '\0');
  const std::string plainName(2, '\0');
  int count = 0;
  for (const tests::Sample& sample : tests::AllSamples()) {
    const std::string name = std::to_string(count++);
    Write(folder / "heads" / name, noWish + sample.bytes);
    Write(folder / "files" / name, plainName + sample.bytes);
    if (!sample.streams.empty()) {
      Write(folder / "compound" / name, tests::WriteCompound(sample.streams));
    }
  }
  return 0;
}
