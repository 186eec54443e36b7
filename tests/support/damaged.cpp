// damaged FOLDER: writes the damaged documents into the folder. One line each on standard output,
// with tabs between: the file's name, what is damaged, whether the structure is sound, and what our
// reader makes of it.
// damaged FILE...: the latter alone, a line each: the sizes of the streams "Long" and "Short" (-1:
// no such stream) or "does not open". On Windows it is the system's own reader.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "host/compound/check.h"
#include "host/owners.h"
#include "host/structured_storage.h"
#include "tests/support/damaged_documents.h"
#include "tests/support/memory_source.h"
#include "tests/support/temp_folder.h"

#ifdef _WIN32
// The host's function of that name checks the structure first.
HRESULT OpenUnchecked(const wchar_t* path, IStorage* priority, std::uint32_t mode,
                      wchar_t** exclusions, std::uint32_t reserved,
                      IStorage** storage) __asm__("StgOpenStorage");
#else
constexpr auto OpenUnchecked = StgOpenStorage;
#endif

namespace {

using namespace typescout;

int SizeOf(IStorage* storage, const wchar_t* name) {
  InterfaceOwner<IStream> stream;
  if (storage->OpenStream(name, nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0, stream.Receive()) !=
      S_OK) {
    return -1;
  }
  std::string bytes(60'000, '\0');
  std::uint32_t read = 0;
  stream->Read(bytes.data(), 60'000, &read);
  return static_cast<int>(read);
}

void Read(const std::filesystem::path& file) {
  InterfaceOwner<IStorage> storage;
  OpenUnchecked(tests::Wide(file).c_str(), nullptr, STGM_READ | STGM_SHARE_DENY_WRITE, nullptr, 0,
                storage.Receive());
  if (storage) {
    std::printf("%d %d\n", SizeOf(storage.get(), L"Long"), SizeOf(storage.get(), L"Short"));
  } else {
    std::puts("does not open");
  }
  std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return 64;
  const std::filesystem::path folder = argv[1];
  if (std::filesystem::is_regular_file(folder)) {
    for (int i = 1; i < argc; ++i) Read(argv[i]);
    return 0;
  }
  std::filesystem::create_directories(folder);
  int number = 0;
  for (const auto& [what, bytes, longSize, shortSize, sound] : tests::DamagedDocuments()) {
    const std::string name = std::to_string(++number);
    std::ofstream(folder / name, std::ios::binary) << bytes;
    const bool isSound = compound::IsSound(std::make_unique<tests::MemorySource>(bytes));
    std::printf("%s\t%s\t%s\t", name.c_str(), what.c_str(), isSound ? "sound" : "unsound");
    Read(folder / name);
  }
  return 0;
}
