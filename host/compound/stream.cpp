#include "host/compound/stream.h"

#include <algorithm>

namespace compound {
namespace {

// Of the mini stream's allocation table. A stream in it has 64 sectors at most.
constexpr std::size_t TABLE_SECTORS_KEPT = 16;

}  // namespace

MiniSectors::MiniSectors(FileSectors* sectors, const Entry& root)
    : sectors_(sectors),
      content_(sectors, root.FirstSector()),
      tableContent_(sectors, sectors->FirstMiniTableSector()),
      table_(sectors->SectorSize(), TABLE_SECTORS_KEPT) {}

std::uint64_t MiniSectors::SectorCount() const {
  const std::uint64_t inFile = sectors_->SectorCount() * (sectors_->SectorSize() / SectorSize());
  return std::min<std::uint64_t>(inFile, std::uint64_t{LAST_SECTOR} + 1);
}

std::uint32_t MiniSectors::Next(std::uint32_t sector) {
  return table_.Entry(sector, [this](std::size_t index, std::size_t, std::uint8_t* bytes) {
    const std::size_t size = sectors_->SectorSize();
    const std::size_t got = tableContent_.ReadAt(std::uint64_t{index} * size, bytes, size);
    std::fill(bytes + got, bytes + size, std::uint8_t{0xFF});
    return std::size_t{1};
  });
}

std::size_t MiniSectors::ReadAt(std::uint32_t sector, std::size_t offset, std::uint8_t* bytes,
                                std::size_t count) {
  return content_.ReadAt(std::uint64_t{sector} * SectorSize() + offset, bytes, count);
}

std::size_t StreamReader::Read(std::uint8_t* bytes, std::size_t count) {
  const std::size_t got = chain_.ReadAt(
      position_, bytes, static_cast<std::size_t>(std::min<std::uint64_t>(count, left_)));
  position_ += got;
  left_ -= got;
  return got;
}

}  // namespace compound
