#include "detectors/documents/scriptora_header.h"

#include <new>

#include "detectors/stream_read.h"

namespace typescout {

bool HasScriptoraHeader(ByteView bytes, ScriptoraType type) {
  constexpr std::uint8_t WORD_PROCESSOR = 0x01;
  return bytes.size() >= SCRIPTORA_HEADER_SIZE && bytes.Matches(0, "\xFFQLX") &&
         bytes.U8(8) == WORD_PROCESSOR && bytes.U8(9) == static_cast<std::uint8_t>(type);
}

ScriptoraStream::ScriptoraStream(const ProbeContext* probe) {
  if (probe->storage == nullptr) return;
  const auto size = static_cast<std::size_t>(Head(probe).size());
  buffer_.reset(new (std::nothrow) unsigned char[size]);
  if (buffer_ == nullptr) return;
  bytes_ = ReadStream(probe->storage, SCRIPTORA_MAIN_STREAM, {buffer_.get(), size});
}

}  // namespace typescout
