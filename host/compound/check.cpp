#include "host/compound/check.h"

#include <array>
#include <limits>
#include <new>
#include <optional>
#include <utility>

#include "host/compound/directory.h"
#include "host/compound/sectors.h"

namespace compound {
namespace {

constexpr std::uint64_t MOST_SECTORS = std::uint64_t{1} << 22;
constexpr std::size_t MOST_ENTRIES = std::size_t{1} << 20;

class Check {
 public:
  explicit Check(std::unique_ptr<ByteSource> source)
      : sectors_(std::move(source), std::numeric_limits<std::size_t>::max()) {}

  bool Passes() {
    if (!sectors_.ReadHeader() || sectors_.SectorCount() > MOST_SECTORS) return false;
    stepsLeft_ = 2 * sectors_.SectorCount();
    if (!IsDifatSound() || Follow(sectors_.FirstDirectorySector()) != END) return false;
    Directory directory(&sectors_);
    const std::optional<Entry> root = directory.Root();
    return root && Follow(root->FirstSector()) == END &&
           Follow(sectors_.FirstMiniTableSector()) == END && AreStreamsSound(&directory, *root);
  }

 private:
  enum Way { END, OUTSIDE, CIRCLE };

  // How the chain ends.
  Way Follow(std::uint32_t sector) {
    NumberSet seen(sectors_.SectorCount());
    for (; sector <= LAST_SECTOR; sector = sectors_.Next(sector)) {
      if (sector >= sectors_.SectorCount()) return OUTSIDE;
      if (stepsLeft_ == 0 || !seen.Insert(sector)) return CIRCLE;
      --stepsLeft_;
    }
    return END;
  }

  // The last number in each of its sectors leads to the next. The header has their count.
  bool IsDifatSound() {
    NumberSet seen(sectors_.SectorCount());
    std::uint32_t sector = sectors_.FirstDifatSector();
    for (std::uint32_t left = sectors_.DifatSectorCount(); left > 0; --left) {
      std::array<std::uint8_t, 4> next = {};
      if (!seen.Insert(sector)) return false;
      sectors_.ReadAt(sector, sectors_.SectorSize() - next.size(), next.data(), next.size());
      sector = U32(next.data());
    }
    return true;
  }

  bool AreStreamsSound(Directory* directory, const Entry& root) {
    // Short streams lie in the mini stream, whose chains are not followed farther than their size.
    const Links firstSectors =
        directory->ReadLinks(MOST_ENTRIES, [](const Entry& entry, int version) {
          const bool isLong = entry.IsStream() && entry.StreamSize(version) >= MINI_STREAM_CUTOFF;
          return isLong ? entry.FirstSector() : END_OF_CHAIN;
        });
    bool haveEnds = true;
    const bool isTree =
        firstSectors.Walk(root.Child(), [&](std::uint32_t /*number*/, std::uint32_t first) {
          haveEnds = Follow(first) != CIRCLE;
          return !haveEnds;
        });
    return isTree && haveEnds && firstSectors.size() < MOST_ENTRIES;
  }

  FileSectors sectors_;
  std::uint64_t stepsLeft_ = 0;
};

}  // namespace

bool IsSound(std::unique_ptr<ByteSource> source) {
  try {
    return Check(std::move(source)).Passes();
  } catch (const std::bad_alloc&) {
    return false;
  }
}

}  // namespace compound
