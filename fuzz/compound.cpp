// Fuzz target: arbitrary bytes as a compound document; its class and the streams that rows look
// for, each read to its end.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "fuzz/reached.h"
#include "host/compound/reader.h"
#include "host/owners.h"

namespace fuzz {

int streamsReached = 0;

}  // namespace fuzz

namespace {

class MemorySource final : public compound::ByteSource {
 public:
  MemorySource(const std::uint8_t* bytes, std::size_t size) : bytes_(bytes), size_(size) {}
  std::size_t ReadAt(std::uint64_t offset, void* bytes, std::size_t count) const override {
    if (offset >= size_) return 0;
    const std::size_t taken = std::min(count, size_ - static_cast<std::size_t>(offset));
    std::memcpy(bytes, bytes_ + offset, taken);
    return taken;
  }
  std::uint64_t size() const override { return size_; }

 private:
  const std::uint8_t* bytes_;
  std::size_t size_;
};

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
  if (total > 0) ++fuzz::streamsReached;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  InterfaceOwner<IStorage> storage;
  compound::Open(std::make_unique<MemorySource>(data, size), storage.Receive());
  if (!storage) return 0;
  CLSID classId;
  compound::ReadClass(storage.get(), &classId);
  for (const wchar_t* name : {L"WordDocument", L"ScriptoraDesk_MAIN", L"Contents"}) {
    InterfaceOwner<IStream> stream;
    if (storage->OpenStream(name, nullptr, 0x10, 0, stream.Receive()) == S_OK) {
      ReadToItsEnd(stream.get(), size);
    }
  }
  return 0;
}
