#include "tests/support/compound_writer.h"

#include <algorithm>
#include <cstdint>
#include <cwctype>
#include <iterator>
#include <span>
#include <utility>
#include <vector>

namespace typescout::tests {
namespace {

constexpr std::uint32_t DIFAT_SECTOR = 0xFFFFFFFC;
constexpr std::uint32_t FAT_SECTOR = 0xFFFFFFFD;
constexpr std::uint32_t END_OF_CHAIN = 0xFFFFFFFE;
constexpr std::uint32_t FREE = 0xFFFFFFFF;
constexpr std::size_t MINI_SECTOR = 64;
constexpr std::size_t CUTOFF = 4096;

// Little-endian numbers written over `bytes`.
void Put(std::string& bytes, std::size_t at, std::uint64_t value, std::size_t size) {
  for (std::size_t i = 0; i < size; ++i) bytes[at + i] = static_cast<char>(value >> (8 * i));
}

std::string Numbers(const std::vector<std::uint32_t>& numbers) {
  std::string bytes(4 * numbers.size(), '\0');
  for (std::size_t i = 0; i < numbers.size(); ++i) Put(bytes, 4 * i, numbers[i], 4);
  return bytes;
}

std::size_t RoundUp(std::size_t size, std::size_t unit) { return (size + unit - 1) / unit; }

// Appends a chain of `count` places to an allocation table; where it begins.
std::uint32_t AddChain(std::vector<std::uint32_t>& table, std::size_t count) {
  const auto first = static_cast<std::uint32_t>(table.size());
  for (std::size_t i = 1; i <= count; ++i) {
    table.push_back(i == count ? END_OF_CHAIN : first + static_cast<std::uint32_t>(i));
  }
  return count == 0 ? END_OF_CHAIN : first;
}

class Writer {
 public:
  explicit Writer(const CompoundOptions& options)
      : options_(options), sectorSize_(options.version == 3 ? 512 : 4096) {}

  std::string Write(const std::map<std::wstring, std::string>& streams) {
    fat_.assign(options_.freeSectors, FREE);
    body_.assign(options_.freeSectors * sectorSize_, '\0');
    std::vector<std::uint32_t> miniFat;
    std::string miniStream;
    std::vector<std::pair<std::wstring, std::size_t>> order;
    std::vector<std::string> entries = {Entry(L"Root Entry", 5, 0, 0)};
    for (const auto& [name, content] : streams) {
      std::uint32_t first = 0;
      if (content.size() >= CUTOFF) {
        first = AddSectors(content);
      } else {
        const std::size_t count = RoundUp(content.size(), MINI_SECTOR);
        first = AddChain(miniFat, count);
        miniStream += content + std::string(count * MINI_SECTOR - content.size(), '\0');
      }
      // Entries are ordered by the length of their names first, then without regard to case.
      std::wstring key(1, static_cast<wchar_t>(name.size()));
      for (const wchar_t c : name)
        key += static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c)));
      order.emplace_back(key, entries.size());
      entries.push_back(Entry(name, 2, first, content.size()));
    }
    std::sort(order.begin(), order.end());
    Put(entries[0], 76, LinkTree(order, entries), 4);
    const std::uint32_t miniStreamAt = AddSectors(miniStream);
    Put(entries[0], 116, miniStreamAt, 4);
    Put(entries[0], 120, miniStream.size(), 8);
    const std::size_t miniFatSectors = RoundUp(4 * miniFat.size(), sectorSize_);
    miniFat.resize(miniFatSectors * sectorSize_ / 4, FREE);
    const std::uint32_t miniFatAt = AddSectors(Numbers(miniFat));
    std::string directory;
    for (const std::string& entry : entries) directory += entry;
    const std::uint32_t directoryAt = AddSectors(directory);
    AddFat();

    std::string header(sectorSize_, '\0');
    const bool isVersion3 = options_.version == 3;
    header.replace(0, 8, "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1");
    Put(header, 24, isVersion3 ? 0x0009'FFFE'0003'003E : 0x000C'FFFE'0004'003E, 8);
    Put(header, 32, 6, 2);
    const std::size_t directorySectors = RoundUp(directory.size(), sectorSize_);
    const std::size_t NUMBERS[] = {isVersion3 ? 0 : directorySectors,
                                   fatSectors_.size(),
                                   directoryAt,
                                   0,
                                   CUTOFF,
                                   miniFatAt,
                                   miniFatSectors,
                                   difatAt_,
                                   difatCount_};
    for (std::size_t i = 0; i < std::size(NUMBERS); ++i) Put(header, 40 + 4 * i, NUMBERS[i], 4);
    for (std::size_t i = 0; i < 109; ++i) {
      Put(header, 76 + 4 * i, i < fatSectors_.size() ? fatSectors_[i] : FREE, 4);
    }
    return header + body_;
  }

 private:
  std::string Entry(const std::wstring& name, int type, std::uint32_t first,
                    std::size_t size) const {
    std::string entry(128, '\0');
    for (std::size_t i = 0; i < name.size(); ++i) {
      Put(entry, 2 * i, static_cast<std::uint32_t>(name[i]), 2);
    }
    Put(entry, 64, 2 * name.size() + 2, 2);
    entry[66] = static_cast<char>(type);
    entry[67] = 1;
    for (const std::size_t link : {68U, 72U, 76U}) Put(entry, link, FREE, 4);
    if (type == 5) entry.replace(80, 16, reinterpret_cast<const char*>(&options_.classId), 16);
    Put(entry, 116, first, 4);
    Put(entry, 120, size, 8);
    return entry;
  }

  // Links entries, given as their names' keys and their numbers, as a balanced tree; its root.
  static std::uint32_t LinkTree(std::span<const std::pair<std::wstring, std::size_t>> order,
                                std::vector<std::string>& entries) {
    if (order.empty()) return FREE;
    const std::size_t middle = order.size() / 2;
    const std::size_t number = order[middle].second;
    Put(entries[number], 68, LinkTree(order.first(middle), entries), 4);
    Put(entries[number], 72, LinkTree(order.subspan(middle + 1), entries), 4);
    return static_cast<std::uint32_t>(number);
  }

  std::uint32_t AddSectors(const std::string& content) {
    const std::size_t count = RoundUp(content.size(), sectorSize_);
    body_ += content + std::string(count * sectorSize_ - content.size(), '\0');
    return AddChain(fat_, count);
  }

  // The allocation table describes itself and the sectors that name those of it that the header has
  // no room for.
  void AddFat() {
    const std::size_t perSector = sectorSize_ / 4;
    std::size_t fatCount = 0;
    for (std::size_t needed = 1; needed != fatCount;) {
      fatCount = needed;
      difatCount_ = fatCount > 109 ? RoundUp(fatCount - 109, perSector - 1) : 0;
      needed = RoundUp(fat_.size() + fatCount + difatCount_, perSector);
    }
    for (std::size_t i = 0; i < fatCount; ++i) {
      fatSectors_.push_back(static_cast<std::uint32_t>(fat_.size()));
      fat_.push_back(FAT_SECTOR);
    }
    if (difatCount_ > 0) difatAt_ = static_cast<std::uint32_t>(fat_.size());
    fat_.insert(fat_.end(), difatCount_, DIFAT_SECTOR);
    fat_.resize(fatCount * perSector, FREE);
    body_ += Numbers(fat_);
    for (std::size_t i = 0; i < difatCount_; ++i) {
      std::vector<std::uint32_t> sector;
      for (std::size_t k = 109 + i * (perSector - 1); sector.size() + 1 < perSector; ++k) {
        sector.push_back(k < fatSectors_.size() ? fatSectors_[k] : FREE);
      }
      sector.push_back(i + 1 < difatCount_ ? difatAt_ + static_cast<std::uint32_t>(i) + 1
                                           : END_OF_CHAIN);
      body_ += Numbers(sector);
    }
  }

  CompoundOptions options_;
  std::size_t sectorSize_;
  std::string body_;
  std::vector<std::uint32_t> fat_;
  std::vector<std::uint32_t> fatSectors_;
  std::uint32_t difatAt_ = END_OF_CHAIN;
  std::size_t difatCount_ = 0;
};

}  // namespace

std::string WriteCompound(const std::map<std::wstring, std::string>& streams,
                          const CompoundOptions& options) {
  return Writer(options).Write(streams);
}

}  // namespace typescout::tests
