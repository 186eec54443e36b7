#include "host/compound/sectors.h"

#include <algorithm>

namespace compound {
namespace {

constexpr std::size_t HEADER_SIZE = 512;
constexpr std::size_t DIFAT_IN_HEADER = 109;
// Sectors of the allocation table that can be found: the table of a file of 2 GB in sectors of 512
// bytes, beyond which version 3 does not go, or of 128 GB in larger ones.
constexpr std::size_t MOST_TABLE_SECTORS = std::size_t{1} << 15;
// How many bytes of the allocation table are kept, and how many are read at once where they lie in
// one piece.
constexpr std::size_t TABLE_CACHE_SIZE = std::size_t{1} << 16;
constexpr std::size_t TABLE_READ_SIZE = 4096;

}  // namespace

bool NumberSet::Insert(std::uint32_t number) {
  if (number >= limit_) return false;
  const std::uint32_t pageNumber = number / PAGE_BITS;
  if (page_ == nullptr || pageNumber != pageNumber_) {
    page_ = pages_[pageNumber].data();
    pageNumber_ = pageNumber;
  }
  std::uint64_t& word = page_[number % PAGE_BITS / 64];
  const std::uint64_t bit = std::uint64_t{1} << number % 64;
  if ((word & bit) != 0) return false;
  word |= bit;
  return true;
}

void Chain::Follow(std::uint64_t length) {
  while (length_ < length) {
    if (length_ > 0) next_ = sectors_->Next(last_);
    const bool jumps = length_ == 0 || next_ != last_ + 1;
    if (!seen_.Insert(next_) || (jumps && !sectors_->MayJump())) return;
    if (jumps) runs_.push_back({length_, next_});
    last_ = next_;
    ++length_;
  }
}

std::uint64_t Chain::Length(std::uint64_t most) {
  Follow(most);
  return std::min<std::uint64_t>(length_, most);
}

std::size_t Chain::ReadAt(std::uint64_t offset, std::uint8_t* bytes, std::size_t count) {
  const std::size_t size = sectors_->SectorSize();
  Follow((offset + count + size - 1) / size);
  std::uint64_t index = offset / size;
  auto within = static_cast<std::size_t>(offset % size);
  auto run = std::upper_bound(runs_.begin(), runs_.end(), index,
                              [](std::uint64_t i, const Run& r) { return i < r.index; });
  std::size_t done = 0;
  // Each turn reads what lies in one run; `run` is the one behind it.
  for (; done < count && index < length_; ++run) {
    const std::uint64_t end = run == runs_.end() ? length_ : run->index;
    const auto wanted = static_cast<std::size_t>(
        std::min<std::uint64_t>(count - done, (end - index) * size - within));
    const Run& here = *(run - 1);
    const auto sector = static_cast<std::uint32_t>(here.sector + (index - here.index));
    const std::size_t got = sectors_->ReadAt(sector, within, bytes + done, wanted);
    done += got;
    if (got < wanted) break;
    index = end;
    within = 0;
  }
  return done;
}

bool FileSectors::ReadHeader() {
  constexpr std::uint16_t LITTLE_ENDIAN_MARK = 0xFFFE;
  constexpr std::uint16_t MINI_SECTOR_SHIFT = 6;
  std::array<std::uint8_t, HEADER_SIZE> header;
  if (source_->ReadAt(0, header.data(), HEADER_SIZE) != HEADER_SIZE) return false;
  version_ = U16(&header[26]);
  shift_ = U16(&header[30]);
  if (!std::equal(SIGNATURE.begin(), SIGNATURE.end(), header.begin()) ||
      U16(&header[28]) != LITTLE_ENDIAN_MARK || U16(&header[32]) != MINI_SECTOR_SHIFT ||
      !((version_ == 3 && shift_ == 9) || (version_ == 4 && shift_ == 12)) ||
      U32(&header[56]) != MINI_STREAM_CUTOFF) {
    return false;
  }
  const std::uint64_t sectors = (source_->size() + SectorSize() - 1) >> shift_;
  sectorCount_ = std::clamp<std::uint64_t>(sectors, 1, std::uint64_t{LAST_SECTOR} + 2) - 1;
  firstDirectorySector_ = U32(&header[48]);
  firstMiniTableSector_ = U32(&header[60]);
  firstDifatSector_ = nextDifatSector_ = U32(&header[68]);
  difatSectorCount_ = U32(&header[72]);
  for (std::size_t i = 0; i < DIFAT_IN_HEADER; ++i) {
    tableSectors_.push_back(U32(&header[76 + 4 * i]));
  }
  return true;
}

std::size_t FileSectors::ReadAt(std::uint32_t sector, std::size_t offset, std::uint8_t* bytes,
                                std::size_t count) {
  if (sector >= sectorCount_) return 0;
  return source_->ReadAt(((std::uint64_t{sector} + 1) << shift_) + offset, bytes, count);
}

std::uint32_t FileSectors::Next(std::uint32_t sector) {
  if (table_ == nullptr) {
    const std::uint64_t needed = 4 * sectorCount_ / SectorSize() + 1;
    const std::uint64_t kept = std::min<std::uint64_t>(needed, TABLE_CACHE_SIZE / SectorSize());
    table_ = std::make_unique<TableCache>(SectorSize(), static_cast<std::size_t>(kept));
  }
  return table_->Entry(sector, [this](std::size_t index, std::size_t most, std::uint8_t* bytes) {
    return LoadTable(index, most, bytes);
  });
}

// Of the table's sectors, those in one piece. What cannot be read of them is free.
std::size_t FileSectors::LoadTable(std::size_t index, std::size_t most, std::uint8_t* bytes) {
  while (index >= tableSectors_.size()) {
    if (!ReadNextDifatSector()) return 0;
  }
  most = std::min({most, tableSectors_.size() - index, TABLE_READ_SIZE / SectorSize()});
  const std::uint64_t first = tableSectors_[index];
  std::size_t count = 1;
  while (count < most && tableSectors_[index + count] == first + count) ++count;
  const std::size_t got =
      MayJump() ? ReadAt(tableSectors_[index], 0, bytes, count * SectorSize()) : 0;
  std::fill(bytes + got, bytes + count * SectorSize(), std::uint8_t{0xFF});
  return count;
}

// Appends what the next sector of the DIFAT says of where the table lies. [MS-CFB] 2.5. False at
// its end. No check for circles: it ends with the last sector of the table that there can be.
bool FileSectors::ReadNextDifatSector() {
  const std::size_t perSector = SectorSize() / 4;
  const std::uint64_t needed = (sectorCount_ + perSector - 1) / perSector;
  if (tableSectors_.size() >= std::min<std::uint64_t>(needed, MOST_TABLE_SECTORS)) return false;
  std::vector<std::uint8_t> bytes(SectorSize());
  if (!MayJump() || ReadAt(nextDifatSector_, 0, bytes.data(), bytes.size()) != bytes.size()) {
    return false;
  }
  for (std::size_t i = 0; i + 1 < perSector; ++i) tableSectors_.push_back(U32(&bytes[4 * i]));
  nextDifatSector_ = U32(&bytes[bytes.size() - 4]);
  return true;
}

}  // namespace compound
