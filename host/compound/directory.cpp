#include "host/compound/directory.h"

#include <algorithm>

namespace compound {
namespace {

// How many bytes of the directory are read at once.
constexpr std::size_t PIECE_SIZE = std::size_t{1} << 16;
constexpr std::size_t LONGEST_NAME = 31;

std::uint32_t Upper(std::uint32_t c) { return c >= 'a' && c <= 'z' ? c - ('a' - 'A') : c; }

// FNV-1a, by characters. `letter(i)` is the i-th of `size`.
template <typename Letter>
std::uint32_t Hash(std::size_t size, const Letter& letter) {
  std::uint32_t hash = 2166136261U;
  for (std::size_t i = 0; i < size; ++i) hash = (hash ^ Upper(letter(i))) * 16777619U;
  return hash;
}

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

// The name is UTF-16, its length in bytes with the terminator.
bool Entry::IsCalled(std::wstring_view name) const {
  if (name.size() > LONGEST_NAME || U16(&bytes_[64]) != 2 * (name.size() + 1)) return false;
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (Upper(U16(&bytes_[2 * i])) != Upper(static_cast<std::uint32_t>(name[i]))) return false;
  }
  return true;
}

std::uint32_t Entry::NameHash() const {
  const std::size_t size = std::clamp<std::size_t>(U16(&bytes_[64]) / 2, 1, LONGEST_NAME + 1) - 1;
  return Hash(size, [this](std::size_t i) { return U16(&bytes_[2 * i]); });
}

std::uint32_t NameHash(std::wstring_view name) {
  return Hash(name.size(), [name](std::size_t i) { return static_cast<std::uint32_t>(name[i]); });
}

std::optional<Entry> Directory::Root() {
  Entry root;
  if (!Read(0, &root) || !root.IsRoot()) return std::nullopt;
  child_ = root.Child();
  return root;
}

bool Directory::Read(std::uint32_t number, Entry* entry) {
  const std::uint64_t at = std::uint64_t{number} * Entry::SIZE;
  return chain_.ReadAt(at, entry->data(), Entry::SIZE) == Entry::SIZE;
}

Links Directory::ReadLinks(std::size_t most, std::uint32_t (*value)(const Entry&, int version)) {
  const std::uint64_t length = chain_.Length(PIECE_SIZE / sectors_->SectorSize());
  std::vector<std::uint8_t> piece(static_cast<std::size_t>(length) * sectors_->SectorSize());
  Links links;
  std::size_t got = piece.size();
  while (got == piece.size() && links.size() < most &&
         sectors_->JumpsLeft() >= sectors_->MostJumps() / 4) {
    got = chain_.ReadAt(links.size() * Entry::SIZE, piece.data(), piece.size());
    for (std::size_t at = 0; at + Entry::SIZE <= got; at += Entry::SIZE) {
      Entry entry;
      std::copy_n(&piece[at], Entry::SIZE, entry.data());
      links.Add(entry, value(entry, sectors_->Version()));
    }
  }
  return links;
}

std::optional<Entry> Directory::FindStream(std::wstring_view name) {
  if (!hashes_) {
    hashes_ = ReadLinks(MOST_ENTRIES, [](const Entry& entry, int) { return entry.NameHash(); });
  }
  const std::uint32_t wanted = NameHash(name);
  std::optional<Entry> found;
  hashes_->Walk(child_, [&](std::uint32_t number, std::uint32_t nameHash) {
    Entry entry;
    const bool isIt = nameHash == wanted && sectors_->MayJump() && Read(number, &entry) &&
                      entry.IsStream() && entry.IsCalled(name);
    if (isIt) found = entry;
    return isIt;
  });
  return found;
}

}  // namespace compound
