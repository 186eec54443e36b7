// A plain main for a fuzz target, for builds without libFuzzer: runs it over files, and over the
// files in folders. A fault ends the program. Of the inputs of the target that reads
// compound documents, at least every fourth must reach a stream.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

#ifdef WANTS_STREAMS
extern int streamsReached;
#endif

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
  for (int i = 1; i < argc; ++i) {
    const std::filesystem::path path = argv[i];
    if (!std::filesystem::is_directory(path)) {
      Replay(path);
      continue;
    }
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path)) {
      if (entry.is_regular_file()) Replay(entry.path());
    }
  }
  std::printf("replayed %d files\n", replayed);
#ifdef WANTS_STREAMS
  std::printf("streams reached: %d\n", streamsReached);
  if (4 * streamsReached < replayed) return 1;
#endif
  return replayed > 0 ? 0 : 1;
}
