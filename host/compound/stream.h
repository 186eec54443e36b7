// Streams of a compound document: short ones in the mini stream, the others in sectors of the file.
// [MS-CFB] 2.4, 2.6.
#ifndef TYPESCOUT_HOST_COMPOUND_STREAM_H
#define TYPESCOUT_HOST_COMPOUND_STREAM_H

#include <cstddef>
#include <cstdint>

#include "host/compound/directory.h"
#include "host/compound/sectors.h"

namespace compound {

// The mini stream, cut into small sectors with an allocation table of their own.
class MiniSectors final : public Sectors {
 public:
  // `sectors` must outlive the object. `root` says where the mini stream lies. Its size is not
  // looked at: what counts is the chain.
  MiniSectors(FileSectors* sectors, const Entry& root);

  std::size_t SectorSize() const override { return 64; }
  std::uint64_t SectorCount() const override;
  std::uint32_t Next(std::uint32_t sector) override;
  std::size_t ReadAt(std::uint32_t sector, std::size_t offset, std::uint8_t* bytes,
                     std::size_t count) override;
  bool MayJump() override { return sectors_->MayJump(); }

 private:
  FileSectors* sectors_;
  Chain content_;
  Chain tableContent_;
  TableCache table_;
};

// One stream, read from its start on. May throw std::bad_alloc and nothing else.
class StreamReader {
 public:
  // `sectors`, in which the stream lies, must outlive the object.
  StreamReader(Sectors* sectors, std::uint32_t firstSector, std::uint64_t size)
      : chain_(sectors, firstSector), left_(size) {}

  // Reads up to `count` bytes more; returns how many came, fewer at the end of the stream and where
  // its chain breaks.
  std::size_t Read(std::uint8_t* bytes, std::size_t count);

 private:
  Chain chain_;
  std::uint64_t position_ = 0;
  std::uint64_t left_;
};

}  // namespace compound

#endif  // TYPESCOUT_HOST_COMPOUND_STREAM_H
