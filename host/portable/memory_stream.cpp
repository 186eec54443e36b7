#include "host/memory_stream.h"

#include <algorithm>
#include <cstring>

namespace TvnUtils {

std::uint64_t Stream::Read(void* bytes, std::uint64_t count) {
  const std::uint64_t taken = std::min(count, length_ - position_);
  if (taken > 0) std::memcpy(bytes, bytes_ + position_, static_cast<std::size_t>(taken));
  position_ += taken;
  return taken;
}

Stream MemStream::OpenOnRef(const unsigned char* bytes, std::int64_t length) {
  return {bytes, static_cast<std::uint64_t>(std::max<std::int64_t>(length, 0))};
}

}  // namespace TvnUtils
