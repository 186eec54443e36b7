// Our own reader of compound documents. [MS-CFB], "Compound File Binary File Format".
//
// It reads by position and as late as it can: what is not followed does not matter, counts that are
// not needed are not looked at. No number in a file makes it allocate more than a fraction of the
// file's size; every chain is followed forward and ends at the first sector that lies outside the
// file or was there before, so a damaged chain gives a short read and no file makes it loop.
#ifndef TYPESCOUT_HOST_COMPOUND_READER_H
#define TYPESCOUT_HOST_COMPOUND_READER_H

#include <cstddef>
#include <cstdint>
#include <memory>

#include "host/structured_storage.h"

namespace compound {

// Where the bytes come from.
class ByteSource {
 public:
  ByteSource() = default;
  ByteSource(const ByteSource&) = delete;
  ByteSource& operator=(const ByteSource&) = delete;
  virtual ~ByteSource() = default;

  // Reads up to `count` bytes at `offset`; returns how many came, fewer at the end or on an error.
  virtual std::size_t ReadAt(std::uint64_t offset, void* bytes, std::size_t count) const = 0;
  virtual std::uint64_t size() const = 0;
};

// Whether the source begins with the signature of compound documents; nothing else is looked at.
bool HasSignature(const ByteSource& source);

// Opens a document of version 3 or 4. `*storage` becomes its root, which owns the source and which
// the caller releases; null on failure: STG_E_INVALIDHEADER when the header cannot be understood,
// STG_E_INSUFFICIENTMEMORY. The streams directly below the root are found by OpenStream without
// regard to ASCII case; they stay good after the root is released. Throws nothing, then or later.
HRESULT Open(std::unique_ptr<ByteSource> source, IStorage** storage);

// The class identifier of a root that Open gave. When it cannot be read: STG_E_READFAULT, all zero.
HRESULT ReadClass(IStorage* storage, CLSID* classId);

}  // namespace compound

#endif  // TYPESCOUT_HOST_COMPOUND_READER_H
