#include "modules/bounded_file.h"

#include <algorithm>
#include <cstring>

namespace modules {

void BoundedFile::Spend(std::int64_t bytes) {
  constexpr std::int64_t CLOCK_EVERY = 4096;
  const std::int64_t before = spent_;
  spent_ += bytes;
  const bool isTimeToLook = before / CLOCK_EVERY != spent_ / CLOCK_EVERY;
  if (spent_ > READ_LIMIT || (isTimeToLook && std::chrono::steady_clock::now() > deadline_)) {
    throw LimitReached();
  }
}

std::size_t BoundedFile::LoadBlock(std::int64_t offset) {
  if (offset < 0 || offset >= size()) return 0;
  if (offset < blockAt_ || offset >= blockAt_ + blockSize_) {
    constexpr auto SIZE = static_cast<std::int64_t>(std::tuple_size<decltype(block_)>());
    Spend(SIZE);
    blockAt_ = offset / SIZE * SIZE;
    blockSize_ = static_cast<std::int64_t>(
        file_.ReadAt(static_cast<std::uint64_t>(blockAt_), block_.data(), block_.size()));
  }
  return static_cast<std::size_t>(std::max<std::int64_t>(blockAt_ + blockSize_ - offset, 0));
}

std::size_t BoundedFile::ReadAt(std::int64_t offset, char* to, std::size_t count) {
  std::size_t done = 0;
  while (done < count) {
    const std::int64_t at = offset + static_cast<std::int64_t>(done);
    const std::size_t part = std::min(LoadBlock(at), count - done);
    if (part == 0) break;
    std::memcpy(to + done, block_.data() + (at - blockAt_), part);
    done += part;
  }
  Spend(static_cast<std::int64_t>(done) + 1);
  return done;
}

int BoundedFile::ByteAt(std::int64_t offset) {
  Spend(1);
  if (LoadBlock(offset) == 0) return -1;
  return static_cast<unsigned char>(block_[static_cast<std::size_t>(offset - blockAt_)]);
}

}  // namespace modules
