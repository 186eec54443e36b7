// write_damaged FOLDER: writes the damaged documents into the folder. One line each on standard
// output, with tabs between: the file's name, what is damaged, whether the structure is sound, and
// what our reader makes of it: the sizes of the streams "Long" and "Short" (-1: no such stream) or
// "does not open".
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "host/compound/check.h"
#include "host/compound/reader.h"
#include "host/owners.h"
#include "tests/support/damaged_documents.h"
#include "tests/support/memory_source.h"

namespace {

using typescout::InterfaceOwner;
using typescout::tests::MemorySource;

int SizeOf(IStorage* storage, const wchar_t* name) {
  InterfaceOwner<IStream> stream;
  if (storage->OpenStream(name, nullptr, STGM_READ, 0, stream.Receive()) != S_OK) return -1;
  std::vector<char> bytes(60'000);
  std::uint32_t read = 0;
  stream->Read(bytes.data(), 60'000, &read);
  return static_cast<int>(read);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 64;
  const std::filesystem::path folder = argv[1];
  std::filesystem::create_directories(folder);
  int number = 0;
  for (const auto& document : typescout::tests::DamagedDocuments()) {
    const std::string name = std::to_string(++number);
    std::ofstream(folder / name, std::ios::binary) << document.bytes;
    const bool isSound = compound::IsSound(std::make_unique<MemorySource>(document.bytes));
    std::printf("%s\t%s\t%s\t", name.c_str(), document.what.c_str(), isSound ? "sound" : "unsound");
    InterfaceOwner<IStorage> storage;
    compound::Open(std::make_unique<MemorySource>(document.bytes), storage.Receive());
    if (storage) {
      std::printf("%d %d\n", SizeOf(storage.get(), L"Long"), SizeOf(storage.get(), L"Short"));
    } else {
      std::puts("does not open");
    }
  }
  return 0;
}
