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

// Everything here may throw std::bad_alloc and nothing else.
class Directory {
 public:
  // More entries are not looked at. Neither are those behind the place where half of what the
  // document may cost is spent, so that something is left for the streams.
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

 private:
  // What is kept of an entry, to search the tree without reading it again.
  struct Node {
    std::uint32_t left, right;
    std::uint32_t nameHash;
  };

  bool Read(std::uint32_t number, Entry* entry);
  void Load();

  FileSectors* sectors_;
  Chain chain_;
  std::uint32_t child_ = 0;  // of the root
  bool hasLoaded_ = false;
  std::vector<Node> nodes_;
};

}  // namespace compound

#endif  // TYPESCOUT_HOST_COMPOUND_DIRECTORY_H
