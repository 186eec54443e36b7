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

  // Where `name` stands beside the entry's own in the order of the directory: shorter names come
  // first, names of the same length by their letters without regard to ASCII case. Negative when
  // `name` comes first, 0 when they are the same. [MS-CFB] 2.6.4.
  int Compare(std::wstring_view name) const;

 private:
  std::array<std::uint8_t, SIZE> bytes_ = {};
};

// Everything here may throw std::bad_alloc and nothing else.
class Directory {
 public:
  // Directories of up to so many entries are read at once and searched all over.
  static constexpr std::uint32_t SMALL = 1024;
  // `sectors` must outlive the directory.
  explicit Directory(FileSectors* sectors)
      : sectors_(sectors), chain_(sectors, sectors->FirstDirectorySector()) {}

  // The first entry, which describes the whole document; empty when it cannot be read or is
  // something else.
  std::optional<Entry> Root();
  // The stream of this name directly below the root, whose entries form a tree. In a small
  // directory it is found wherever it is in the tree, since not every writer keeps the order. In a
  // larger one the search follows the order, for SMALL steps at most.
  std::optional<Entry> FindStream(std::wstring_view name);

 private:
  bool Read(std::uint32_t number, Entry* entry);
  // Reads a small directory into memory.
  void Load();

  FileSectors* sectors_;
  Chain chain_;
  bool hasLoaded_ = false;
  bool isSmall_ = false;
  std::vector<std::uint8_t> bytes_;  // of a small directory
};

}  // namespace compound

#endif  // TYPESCOUT_HOST_COMPOUND_DIRECTORY_H
