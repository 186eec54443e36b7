// The lower half of the reader of compound documents: the file's sectors and the chains that the
// allocation table links them to. [MS-CFB] 2.1 to 2.5.
//
// Everything here may throw std::bad_alloc and nothing else.
#ifndef TYPESCOUT_HOST_COMPOUND_SECTORS_H
#define TYPESCOUT_HOST_COMPOUND_SECTORS_H

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "host/compound/byte_source.h"

namespace compound {

inline constexpr std::array<std::uint8_t, 8> SIGNATURE = {0xD0, 0xCF, 0x11, 0xE0,
                                                          0xA1, 0xB1, 0x1A, 0xE1};
inline constexpr std::size_t MINI_STREAM_CUTOFF = 4096;   // shorter streams lie in the mini stream
inline constexpr std::uint32_t LAST_SECTOR = 0xFFFFFFFA;  // greater numbers have special meanings
inline constexpr std::uint32_t END_OF_CHAIN = 0xFFFFFFFE;
inline constexpr std::uint32_t FREE_SECTOR = 0xFFFFFFFF;

inline std::uint16_t U16(const std::uint8_t* bytes) {
  return static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8);
}
inline std::uint32_t U32(const std::uint8_t* bytes) {
  return U16(bytes) | static_cast<std::uint32_t>(U16(bytes + 2)) << 16;
}

// A set of numbers below a limit. Takes memory for the numbers in it, not for the limit.
class NumberSet {
 public:
  explicit NumberSet(std::uint64_t limit) : limit_(limit) {}
  NumberSet(NumberSet&&) = default;  // a copy's pages lie elsewhere
  // False when the number is not below the limit or is in the set already.
  bool Insert(std::uint32_t number);

 private:
  static constexpr std::size_t PAGE_SIZE = 1024;
  using Page = std::bitset<PAGE_SIZE>;

  std::uint64_t limit_;
  std::unordered_map<std::uint32_t, Page> pages_;
  std::uint32_t lastNumber_ = 0;  // of the page used last, which the next number is mostly in
  Page* lastPage_ = nullptr;
};

// Sectors of one size, numbered from 0 and linked to chains by an allocation table.
class Sectors {
 public:
  Sectors() = default;
  Sectors(const Sectors&) = delete;
  Sectors& operator=(const Sectors&) = delete;
  virtual ~Sectors() = default;

  virtual std::size_t SectorSize() const = 0;
  // Sectors of this number and above do not exist.
  virtual std::uint64_t SectorCount() const = 0;
  // The sector that follows in the chain. A number above LAST_SECTOR when there is none, or when
  // the table's entry cannot be read.
  virtual std::uint32_t Next(std::uint32_t sector) = 0;
  // Reads up to `count` bytes from `offset` in the sector on, and on into the sectors numbered
  // after it. Returns how many came: fewer where the sectors end or cannot be read.
  virtual std::size_t ReadAt(std::uint32_t sector, std::size_t offset, std::uint8_t* bytes,
                             std::size_t count) = 0;
};

// The sectors of an allocation table that were used last.
class TableCache {
 public:
  // For a table in sectors of `sectorSize` bytes, `sectors` of which are kept; at least one.
  TableCache(std::size_t sectorSize, std::size_t sectors)
      : sectorSize_(sectorSize), slots_(sectors) {}

  // The table's entry of this number. `load(index, most, bytes)` fills `bytes` with the table's
  // sectors from `index` on and returns how many: 1 to `most`, of whole size; or 0, when the table
  // has no such sector.
  template <typename Load>
  std::uint32_t Entry(std::uint32_t number, const Load& load) {
    const std::size_t perSector = sectorSize_ / 4;
    const std::size_t index = number / perSector;
    const std::size_t slot = index % slots_;
    if (held_.empty()) {
      bytes_.resize(slots_ * sectorSize_);
      held_.assign(slots_, NONE);
    }
    if (held_[slot] != index) {
      const std::size_t loaded = load(index, slots_ - slot, &bytes_[slot * sectorSize_]);
      if (loaded == 0) return FREE_SECTOR;
      for (std::size_t i = 0; i < loaded; ++i) held_[slot + i] = index + i;
    }
    return U32(&bytes_[slot * sectorSize_ + number % perSector * 4]);
  }

 private:
  static constexpr std::size_t NONE = static_cast<std::size_t>(-1);

  std::size_t sectorSize_;
  std::size_t slots_;
  std::vector<std::size_t> held_;  // the index of the table's sector in each slot
  std::vector<std::uint8_t> bytes_;
};

// A chain of sectors, which hold one sequence of bytes. It is followed only as far as it is needed,
// and ends before the first sector that does not exist or is in it already. Where it jumps more
// often than CHAIN_JUMPS times, it ends too: even one that changes its place with every sector of
// 512 bytes then holds 2 MB.
class Chain {
 public:
  static constexpr std::size_t CHAIN_JUMPS = 4096;

  // `sectors` must outlive the chain.
  Chain(Sectors* sectors, std::uint32_t first)
      : sectors_(sectors), seen_(sectors->SectorCount()), next_(first) {}

  // Reads up to `count` bytes at `offset`; returns how many came, fewer where the chain ends.
  std::size_t ReadAt(std::uint64_t offset, std::uint8_t* bytes, std::size_t count);
  // The number of its sectors, or `most` when there are at least as many.
  std::uint64_t Length(std::uint64_t most);

 private:
  // Sectors of the chain that follow each other in the file too.
  struct Run {
    std::uint32_t index;  // of the first in the chain
    std::uint32_t sector;
  };

  // Follows the chain until it has `length` sectors or ends.
  void Follow(std::uint64_t length);

  Sectors* sectors_;
  NumberSet seen_;
  std::vector<Run> runs_;
  std::uint32_t length_ = 0;  // sectors followed so far
  std::uint32_t last_ = 0;    // the last of these
  std::uint32_t next_;        // the first sector, while none has been followed
  bool hasEnded_ = false;
};

// The sectors of the file, below its header.
class FileSectors final : public Sectors {
 public:
  // What a document's structure may cost: so many reads of its tables and its directory.
  static constexpr std::size_t MOST_READS = 1'000;

  explicit FileSectors(std::unique_ptr<ByteSource> source) : source_(std::move(source)) {}

  // [MS-CFB] 2.2. False when the header cannot be understood; nothing else may be called then.
  bool ReadHeader();

  int Version() const { return version_; }
  std::uint32_t FirstDirectorySector() const { return firstDirectorySector_; }
  std::uint32_t FirstMiniTableSector() const { return firstMiniTableSector_; }

  // Asked before each read of the structure; false when there have been MOST_READS of them.
  bool MayRead() { return reads_ < MOST_READS && ++reads_ > 0; }

  std::size_t SectorSize() const override { return std::size_t{1} << shift_; }
  std::uint64_t SectorCount() const override { return sectorCount_; }
  std::uint32_t Next(std::uint32_t sector) override;
  std::size_t ReadAt(std::uint32_t sector, std::size_t offset, std::uint8_t* bytes,
                     std::size_t count) override;

 private:
  bool ReadNextDifatSector();
  std::size_t LoadTable(std::size_t index, std::size_t most, std::uint8_t* bytes);

  std::unique_ptr<ByteSource> source_;
  std::size_t reads_ = 0;
  int version_ = 0;
  int shift_ = 0;
  std::uint64_t sectorCount_ = 0;  // sectors that begin inside the file
  std::uint32_t firstDirectorySector_ = END_OF_CHAIN;
  std::uint32_t firstMiniTableSector_ = END_OF_CHAIN;
  std::uint32_t nextDifatSector_ = END_OF_CHAIN;
  std::vector<std::uint32_t> tableSectors_;  // where the allocation table lies, as far as read
  std::unique_ptr<TableCache> table_;
};

}  // namespace compound

#endif  // TYPESCOUT_HOST_COMPOUND_SECTORS_H
