#include "tests/support/documents.h"

#include <algorithm>
#include <cstdint>
#include <cwctype>
#include <span>
#include <utility>
#include <vector>

namespace typescout::tests {
namespace {

using Number = std::uint32_t;
constexpr Number DIFAT_SECTOR = 0xFFFFFFFC;
constexpr Number FAT_SECTOR = 0xFFFFFFFD;
constexpr Number END_OF_CHAIN = 0xFFFFFFFE;
constexpr Number FREE = 0xFFFFFFFF;
constexpr std::size_t MINI_SECTOR = 64;
constexpr Number CUTOFF = 4096;
constexpr Number NAMED_IN_HEADER = 109;  // sectors of the allocation table

// Little-endian numbers written over `bytes`.
void Put(std::string& bytes, std::size_t at, std::uint64_t value, std::size_t size) {
  for (std::size_t i = 0; i < size; ++i) bytes[at + i] = static_cast<char>(value >> (8 * i));
}

std::string Numbers(const std::vector<Number>& numbers) {
  std::string bytes(4 * numbers.size(), '\0');
  for (std::size_t i = 0; i < numbers.size(); ++i) Put(bytes, 4 * i, numbers[i], 4);
  return bytes;
}

Number RoundUp(std::size_t size, std::size_t unit) {
  return static_cast<Number>((size + unit - 1) / unit);
}

// Appends a chain of `count` places to an allocation table; where it begins.
Number AddChain(std::vector<Number>& table, Number count) {
  const auto first = static_cast<Number>(table.size());
  for (Number i = 1; i <= count; ++i) table.push_back(i == count ? END_OF_CHAIN : first + i);
  return count == 0 ? END_OF_CHAIN : first;
}

class Writer {
 public:
  explicit Writer(const CompoundOptions& options)
      : options_(options), sectorSize_(options.version == 3 ? 512 : 4096) {}

  std::string Write(const std::map<std::wstring, std::string>& streams) {
    fat_.assign(options_.freeSectors, FREE);
    body_.assign(options_.freeSectors * sectorSize_, '\0');
    std::vector<Number> miniFat;
    std::string miniStream;
    std::vector<std::pair<std::wstring, std::size_t>> order;
    std::vector<std::string> entries = {Entry(L"Root Entry", 5, 0, 0)};
    for (const auto& [name, content] : streams) {
      const bool isLong = content.size() >= CUTOFF;
      const Number first =
          isLong ? AddSectors(content) : AddChain(miniFat, RoundUp(content.size(), MINI_SECTOR));
      if (!isLong) miniStream += content;
      miniStream.resize(miniFat.size() * MINI_SECTOR);
      // Entries are ordered by the length of their names first, then without regard to case.
      std::wstring key(1, static_cast<wchar_t>(name.size()));
      for (const wchar_t c : name)
        key += static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c)));
      order.emplace_back(key, entries.size());
      entries.push_back(Entry(name, 2, first, content.size()));
    }
    std::sort(order.begin(), order.end());
    Put(entries[0], 76, LinkTree(order, entries), 4);
    Put(entries[0], 116, AddSectors(miniStream), 4);
    Put(entries[0], 120, miniStream.size(), 8);
    const Number miniFatSectors = RoundUp(4 * miniFat.size(), sectorSize_);
    miniFat.resize(miniFatSectors * sectorSize_ / 4, FREE);
    const Number miniFatAt = AddSectors(Numbers(miniFat));
    std::string directory;
    for (const std::string& entry : entries) directory += entry;
    const Number directoryAt = AddSectors(directory);
    AddFat();

    std::string header(sectorSize_, '\0');
    const bool isVersion3 = options_.version == 3;
    header.replace(0, 8, "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1");
    Put(header, 24, isVersion3 ? 0x0009'FFFE'0003'003E : 0x000C'FFFE'0004'003E, 8);
    Put(header, 32, 6, 2);
    const Number directorySectors = isVersion3 ? 0 : RoundUp(directory.size(), sectorSize_);
    std::vector<Number> numbers = {directorySectors, fatCount_, directoryAt, 0, CUTOFF, miniFatAt,
                                   miniFatSectors,   difatAt_,  difatCount_};
    numbers.insert(numbers.end(), fatSectors_.begin(), fatSectors_.begin() + NAMED_IN_HEADER);
    header.replace(40, 4 * numbers.size(), Numbers(numbers));
    return header + body_;
  }

 private:
  std::string Entry(const std::wstring& name, int type, Number first, std::size_t size) const {
    std::string entry(128, '\0');
    for (std::size_t i = 0; i < name.size(); ++i) {
      Put(entry, 2 * i, static_cast<Number>(name[i]), 2);
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
  static Number LinkTree(std::span<const std::pair<std::wstring, std::size_t>> order,
                         std::vector<std::string>& entries) {
    if (order.empty()) return FREE;
    const std::size_t middle = order.size() / 2;
    const std::size_t number = order[middle].second;
    Put(entries[number], 68, LinkTree(order.first(middle), entries), 4);
    Put(entries[number], 72, LinkTree(order.subspan(middle + 1), entries), 4);
    return static_cast<Number>(number);
  }

  Number AddSectors(const std::string& content) {
    const Number first = AddChain(fat_, RoundUp(content.size(), sectorSize_));
    body_ += content;
    body_.resize(fat_.size() * sectorSize_);
    return first;
  }

  // The allocation table describes itself and the sectors that name those of it that the header has
  // no room for.
  void AddFat() {
    const auto perSector = static_cast<Number>(sectorSize_ / 4);
    for (Number needed = 1; needed != fatCount_;) {
      fatCount_ = needed;
      difatCount_ =
          fatCount_ > NAMED_IN_HEADER ? RoundUp(fatCount_ - NAMED_IN_HEADER, perSector - 1) : 0;
      needed = RoundUp(fat_.size() + fatCount_ + difatCount_, perSector);
    }
    for (Number i = 0; i < fatCount_; ++i) {
      fatSectors_.push_back(static_cast<Number>(fat_.size()));
      fat_.push_back(FAT_SECTOR);
    }
    if (difatCount_ > 0) difatAt_ = static_cast<Number>(fat_.size());
    fat_.insert(fat_.end(), difatCount_, DIFAT_SECTOR);
    fat_.resize(fatCount_ * perSector, FREE);
    body_ += Numbers(fat_);
    fatSectors_.resize(NAMED_IN_HEADER + difatCount_ * (perSector - 1), FREE);
    auto named = fatSectors_.begin() + NAMED_IN_HEADER;
    for (Number i = 1; i <= difatCount_; ++i, named += perSector - 1) {
      body_ += Numbers({named, named + perSector - 1});
      body_ += Numbers({i < difatCount_ ? difatAt_ + i : END_OF_CHAIN});
    }
  }

  CompoundOptions options_;
  std::size_t sectorSize_;
  std::string body_;
  std::vector<Number> fat_, fatSectors_;
  Number fatCount_ = 0, difatAt_ = END_OF_CHAIN, difatCount_ = 0;
};

}  // namespace

std::string WriteCompound(const std::map<std::wstring, std::string>& streams,
                          const CompoundOptions& options) {
  return Writer(options).Write(streams);
}

}  // namespace typescout::tests
