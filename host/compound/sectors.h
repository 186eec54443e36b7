// The lower half of the reader of compound documents: the file's sectors and the chains that the
// allocation table links them to. [MS-CFB] 2.1 to 2.5.
//
// Everything here may throw std::bad_alloc and nothing else.
#ifndef TYPESCOUT_HOST_COMPOUND_SECTORS_H
#define TYPESCOUT_HOST_COMPOUND_SECTORS_H

#include <array>
#include <bit>
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
  static constexpr std::uint32_t PAGE_BITS = 1024;

  std::uint64_t limit_;
  std::unordered_map<std::uint32_t, std::array<std::uint64_t, PAGE_BITS / 64>> pages_;
  std::uint32_t pageNumber_ = 0;  // of the page used last, which the next number is mostly in
  std::uint64_t* page_ = nullptr;
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
  // Asked before anything is followed to another place in the file. False when the document has
  // had as many as any document may have.
  virtual bool MayJump() = 0;
};

// The sectors of an allocation table that were used last.
class TableCache {
 public:
  // For a table in sectors of `sectorSize` bytes (a power of two), `sectors` of which are kept; at
  // least one.
  TableCache(std::size_t sectorSize, std::size_t sectors)
      : sectorSize_(sectorSize), shift_(std::countr_zero(sectorSize / 4)), slots_(sectors) {}

  // The table's entry of this number. `load(index, most, bytes)` fills `bytes` with the table's
  // sectors from `index` on and returns how many: 1 to `most`, of whole size; or 0, when the table
  // has no such sector.
  template <typename Load>
  std::uint32_t Entry(std::uint32_t number, const Load& load) {
    const std::size_t index = number >> shift_;
    if (index != lastIndex_ && !Find(index, load)) return FREE_SECTOR;
    return U32(last_ + 4 * (number & ((std::size_t{1} << shift_) - 1)));
  }

 private:
  static constexpr std::size_t NONE = static_cast<std::size_t>(-1);

  template <typename Load>
  bool Find(std::size_t index, const Load& load) {
    if (held_.empty()) {
      bytes_.resize(slots_ * sectorSize_);
      held_.assign(slots_, NONE);
    }
    const std::size_t slot = index % slots_;
    std::uint8_t* bytes = &bytes_[slot * sectorSize_];
    if (held_[slot] != index) {
      const std::size_t loaded = load(index, slots_ - slot, bytes);
      if (loaded == 0) return false;
      for (std::size_t i = 0; i < loaded; ++i) held_[slot + i] = index + i;
    }
    lastIndex_ = index;
    last_ = bytes;
    return true;
  }

  std::size_t sectorSize_;
  int shift_;  // of the entries in a sector
  std::size_t slots_;
  std::vector<std::size_t> held_;  // the index of the table's sector in each slot
  std::vector<std::uint8_t> bytes_;
  std::size_t lastIndex_ = NONE;  // of the sector used last, which the next entry is mostly in
  const std::uint8_t* last_ = nullptr;
};

// A chain of sectors, which hold one sequence of bytes. It is followed only as far as it is needed,
// and ends before the first sector that does not exist or is in it already, and where the document
// has had all its jumps.
class Chain {
 public:
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
  std::uint32_t next_;        // the sector after it; the first one, while there are none
};

// The sectors of the file, below its header.
class FileSectors final : public Sectors {
 public:
  // The most reads of the allocation tables and jumps of chains, in all, for one document.
  // That keeps the time within milliseconds and the memory within a megabyte. A scan of documents
  // of 28 MB or with 5,000 streams, written by LibreOffice and libgsf, takes fewer than 30 reads. A
  // document that was written stream by stream may have a jump for each four streams.
  static constexpr std::size_t MOST_JUMPS = 1'800;

  explicit FileSectors(std::unique_ptr<ByteSource> source, std::size_t mostJumps = MOST_JUMPS)
      : source_(std::move(source)), mostJumps_(mostJumps), jumpsLeft_(mostJumps) {}

  // [MS-CFB] 2.2. False when the header cannot be understood; nothing else may be called then.
  bool ReadHeader();

  int Version() const { return version_; }
  std::uint32_t FirstDirectorySector() const { return firstDirectorySector_; }
  std::uint32_t FirstMiniTableSector() const { return firstMiniTableSector_; }
  std::uint32_t FirstDifatSector() const { return firstDifatSector_; }
  std::uint32_t DifatSectorCount() const { return difatSectorCount_; }

  std::size_t MostJumps() const { return mostJumps_; }
  std::size_t JumpsLeft() const { return jumpsLeft_; }

  std::size_t SectorSize() const override { return std::size_t{1} << shift_; }
  std::uint64_t SectorCount() const override { return sectorCount_; }
  std::uint32_t Next(std::uint32_t sector) override;
  std::size_t ReadAt(std::uint32_t sector, std::size_t offset, std::uint8_t* bytes,
                     std::size_t count) override;
  bool MayJump() override { return jumpsLeft_ > 0 && jumpsLeft_-- > 0; }

 private:
  bool ReadNextDifatSector();
  std::size_t LoadTable(std::size_t index, std::size_t most, std::uint8_t* bytes);

  std::unique_ptr<ByteSource> source_;
  std::size_t mostJumps_;
  std::size_t jumpsLeft_;
  int version_ = 0;
  int shift_ = 0;
  std::uint64_t sectorCount_ = 0;  // sectors that begin inside the file
  std::uint32_t firstDirectorySector_ = END_OF_CHAIN;
  std::uint32_t firstMiniTableSector_ = END_OF_CHAIN;
  std::uint32_t firstDifatSector_ = END_OF_CHAIN;
  std::uint32_t nextDifatSector_ = END_OF_CHAIN;
  std::uint32_t difatSectorCount_ = 0;       // as the header says; not relied on
  std::vector<std::uint32_t> tableSectors_;  // where the allocation table lies, as far as read
  std::unique_ptr<TableCache> table_;
};

}  // namespace compound

#endif  // TYPESCOUT_HOST_COMPOUND_SECTORS_H
