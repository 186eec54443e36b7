// The directory of a compound document. [MS-CFB] 2.6.
#ifndef TYPESCOUT_HOST_COMPOUND_DIRECTORY_H
#define TYPESCOUT_HOST_COMPOUND_DIRECTORY_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "host/compound/sectors.h"
#include "host/structured_storage.h"

namespace compound {

// What is known of a storage or a stream. [MS-CFB] 2.6.1.
class Entry {
 public:
  static constexpr std::size_t SIZE = 128;

  std::uint8_t* data() { return bytes_.data(); }

  bool IsStream() const { return bytes_[66] == 2; }
  bool IsRoot() const { return bytes_[66] == 5; }
  std::uint32_t Left() const { return U32(&bytes_[68]); }
  std::uint32_t Right() const { return U32(&bytes_[72]); }
  std::uint32_t Child() const { return U32(&bytes_[76]); }
  CLSID ClassId() const;
  std::uint32_t FirstSector() const { return U32(&bytes_[116]); }
  // The low half only in version 3, whose writers left the other undefined.
  std::uint64_t StreamSize(int version) const;

  // Without regard to ASCII case.
  bool IsCalled(std::wstring_view name) const;
  // The same for all entries of one name.
  std::uint32_t NameHash() const;

 private:
  std::array<std::uint8_t, SIZE> bytes_ = {};
};

std::uint32_t NameHash(std::wstring_view name);

// The links of the directory's entries, and a number about each, kept so that the tree can be
// walked without reading the entries again.
class Links {
 public:
  void Add(const Entry& entry, std::uint32_t value) {
    links_.push_back({entry.Left(), entry.Right(), value});
  }
  std::size_t size() const { return links_.size(); }

  // Calls `visit(number, value)` once for each entry that `first` leads to, siblings and their
  // siblings, until it returns true or there are no more. False when a link leads to an entry that
  // does not exist or that another link has led to.
  template <typename Visit>
  bool Walk(std::uint32_t first, const Visit& visit) const {
    constexpr std::uint32_t LAST_ENTRY = 0xFFFFFFFA;  // greater numbers stand for no entry
    bool isTree = true;
    std::vector<std::uint32_t> pending = {first};
    NumberSet seen(links_.size());
    while (!pending.empty()) {
      const std::uint32_t number = pending.back();
      pending.pop_back();
      if (number > LAST_ENTRY) continue;
      if (!seen.Insert(number)) {
        isTree = false;
        continue;
      }
      if (visit(number, links_[number].value)) break;
      pending.push_back(links_[number].right);
      pending.push_back(links_[number].left);
    }
    return isTree;
  }

 private:
  struct Link {
    std::uint32_t left, right;
    std::uint32_t value;
  };
  std::vector<Link> links_;
};

// Everything here may throw std::bad_alloc and nothing else.
class Directory {
 public:
  // Of a larger directory only this many entries are searched. Reading also stops when a
  // quarter of the document's jumps are left, which are for the streams.
  static constexpr std::size_t MOST_ENTRIES = std::size_t{1} << 15;

  // `sectors` must outlive the directory.
  explicit Directory(FileSectors* sectors)
      : sectors_(sectors), chain_(sectors, sectors->FirstDirectorySector()) {}

  // The first entry, which describes the whole document; empty when it cannot be read or is
  // something else; then there is no directory.
  std::optional<Entry> Root();
  // The stream of this name directly below the root. The entries there form a tree by their order;
  // all of it is searched, since not every writer keeps the order. [MS-CFB] 2.6.4.
  std::optional<Entry> FindStream(std::wstring_view name);
  // Reads the first entries, `most` or a few more, in large pieces. `value` tells what is kept of
  // each beside its links.
  Links ReadLinks(std::size_t most, std::uint32_t (*value)(const Entry&, int version));

 private:
  bool Read(std::uint32_t number, Entry* entry);

  FileSectors* sectors_;
  Chain chain_;
  std::uint32_t child_ = 0;      // of the root
  std::optional<Links> hashes_;  // of the names
};

}  // namespace compound

#endif  // TYPESCOUT_HOST_COMPOUND_DIRECTORY_H
