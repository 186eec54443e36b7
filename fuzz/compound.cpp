// Fuzz target: arbitrary bytes as a compound document: the check of its structure, its class, and
// the streams that rows look for, each read to its end.
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "host/compound/check.h"
#include "host/compound/reader.h"
#include "host/owners.h"
#include "tests/support/documents.h"

namespace {

// No stream is longer than its file: every sector is visited once.
void ReadToItsEnd(IStream* stream, std::size_t fileSize) {
  std::vector<std::uint8_t> bytes(1'000);
  std::uint64_t total = 0;
  std::uint32_t read = 0;
  do {
    if (stream->Read(bytes.data(), 1'000, &read) != S_OK) std::abort();
    total += read;
    if (total > fileSize) std::abort();
  } while (read > 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using typescout::tests::MemorySource;
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const bool isSound = compound::IsSound(std::make_unique<MemorySource>(bytes));
  typescout::InterfaceOwner<IStorage> storage;
  compound::Open(std::make_unique<MemorySource>(bytes), storage.Receive());
  if (isSound && !storage) std::abort();
  if (!storage) return 0;
  CLSID classId;
  compound::ReadClass(storage.get(), &classId);
  for (const wchar_t* name : {L"WordDocument", L"ScriptoraDesk_MAIN", L"Contents"}) {
    typescout::InterfaceOwner<IStream> stream;
    if (storage->OpenStream(name, nullptr, 0x10, 0, stream.Receive()) == S_OK) {
      ReadToItsEnd(stream.get(), size);
    }
  }
  return 0;
}
