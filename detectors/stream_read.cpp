#include "detectors/stream_read.h"

#include "host/owners.h"

namespace typescout {

ByteView ReadStream(IStorage* storage, const wchar_t* name, std::span<unsigned char> buffer) {
  constexpr std::uint32_t READ_ALONE = STGM_READ | STGM_SHARE_EXCLUSIVE;
  if (storage == nullptr) return {};
  InterfaceOwner<IStream> stream;
  if (storage->OpenStream(name, nullptr, READ_ALONE, 0, stream.Receive()) != S_OK) return {};
  std::uint32_t read = 0;
  stream->Read(buffer.data(), static_cast<std::uint32_t>(buffer.size()), &read);
  return {buffer.data(), read};
}

}  // namespace typescout
