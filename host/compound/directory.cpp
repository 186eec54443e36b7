#include "host/compound/directory.h"

#include <algorithm>

namespace compound {
namespace {

constexpr std::uint32_t LAST_ENTRY = 0xFFFFFFFA;  // greater numbers stand for no entry

}  // namespace

CLSID Entry::ClassId() const {
  CLSID id = {U32(&bytes_[80]), U16(&bytes_[84]), U16(&bytes_[86]), {}};
  std::copy_n(&bytes_[88], sizeof id.data4, id.data4);
  return id;
}

std::uint64_t Entry::StreamSize(int version) const {
  const std::uint64_t low = U32(&bytes_[120]);
  return version == 3 ? low : low | std::uint64_t{U32(&bytes_[124])} << 32;
}

int Entry::Compare(std::wstring_view name) const {
  constexpr std::size_t LONGEST_NAME = 31;
  // The name is UTF-16, its length in bytes with the terminator.
  const std::size_t size = 2 * (name.size() + 1);
  const std::size_t entrySize = U16(&bytes_[64]);
  if (size != entrySize) return size < entrySize ? -1 : 1;
  if (name.size() > LONGEST_NAME) return 1;
  const auto upper = [](std::uint32_t c) { return c >= 'a' && c <= 'z' ? c - ('a' - 'A') : c; };
  for (std::size_t i = 0; i < name.size(); ++i) {
    const std::uint32_t c = upper(static_cast<std::uint32_t>(name[i]));
    const std::uint32_t entryC = upper(U16(&bytes_[2 * i]));
    if (c != entryC) return c < entryC ? -1 : 1;
  }
  return 0;
}

std::optional<Entry> Directory::Root() {
  Entry root;
  if (!Read(0, &root) || !root.IsRoot()) return std::nullopt;
  return root;
}

bool Directory::Read(std::uint32_t number, Entry* entry) {
  const std::uint64_t at = std::uint64_t{number} * Entry::SIZE;
  if (!isSmall_) {
    return sectors_->MayRead() && chain_.ReadAt(at, entry->data(), Entry::SIZE) == Entry::SIZE;
  }
  if (at + Entry::SIZE > bytes_.size()) return false;
  std::copy_n(&bytes_[static_cast<std::size_t>(at)], Entry::SIZE, entry->data());
  return true;
}

void Directory::Load() {
  if (hasLoaded_) return;
  const std::uint64_t smallest = SMALL * Entry::SIZE / sectors_->SectorSize();
  const std::uint64_t length = chain_.Length(smallest + 1);
  if (length <= smallest) {
    bytes_.resize(static_cast<std::size_t>(length) * sectors_->SectorSize());
    bytes_.resize(chain_.ReadAt(0, bytes_.data(), bytes_.size()));
    isSmall_ = true;
  }
  hasLoaded_ = true;
}

std::optional<Entry> Directory::FindStream(std::wstring_view name) {
  Load();
  Entry entry;
  if (!Read(0, &entry)) return std::nullopt;
  std::vector<std::uint32_t> pending = {entry.Child()};
  NumberSet seen(LAST_ENTRY);
  for (std::uint32_t steps = 0; steps < SMALL && !pending.empty();) {
    const std::uint32_t number = pending.back();
    pending.pop_back();
    if (number > LAST_ENTRY || !Read(number, &entry) || !seen.Insert(number)) continue;
    ++steps;
    const int order = entry.Compare(name);
    if (order == 0 && entry.IsStream()) return entry;
    if (isSmall_ || order > 0) pending.push_back(entry.Right());
    if (isSmall_ || order < 0) pending.push_back(entry.Left());
  }
  return std::nullopt;
}

}  // namespace compound
