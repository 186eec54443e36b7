// A plain main for a fuzz target, for builds without libFuzzer: runs it over files, and over the
// files in folders. A fault ends the program.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

int replayed = 0;

void Replay(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
  const std::vector<std::uint8_t> exact(bytes.begin(), bytes.end());
  LLVMFuzzerTestOneInput(exact.data(), exact.size());
  ++replayed;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::filesystem::path> paths(argv + 1, argv + argc);
  for (std::size_t i = 0; i < paths.size(); ++i) {
    if (std::filesystem::is_directory(paths[i])) {
      const std::filesystem::directory_iterator entries(paths[i]);
      paths.insert(paths.end(), begin(entries), end(entries));
    } else {
      Replay(paths[i]);
    }
  }
  std::printf("replayed %d files\n", replayed);
  return replayed > 0 ? 0 : 1;
}
