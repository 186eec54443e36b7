// Our own reader of compound documents. [MS-CFB], "Compound File Binary File Format".
//
// It reads by position and only what a call needs. Damage elsewhere has no effect, and the counts
// in the header are ignored. Every chain is followed forward and ends at the first sector that lies
// outside the file or was there before, so a damaged chain gives a short read. What a document can
// cost is bounded whatever its size (FileSectors::MOST_JUMPS, Directory::MOST_ENTRIES).
#ifndef TYPESCOUT_HOST_COMPOUND_READER_H
#define TYPESCOUT_HOST_COMPOUND_READER_H

#include <memory>

#include "host/compound/byte_source.h"
#include "host/structured_storage.h"

namespace compound {

// Whether the source begins with the signature of compound documents; nothing else is looked at.
bool HasSignature(const ByteSource& source);

// Opens a document of version 3 (sectors of 512 bytes) or 4 (of 4,096). `*storage` becomes its
// root, which owns the source and which the caller releases; null on failure: STG_E_INVALIDHEADER
// when the header cannot be understood or the directory does not begin with a root entry,
// STG_E_INSUFFICIENTMEMORY. OpenStream finds the streams directly below the root without regard to
// ASCII case; they stay good after the root is released. Throws nothing, then or later.
HRESULT Open(std::unique_ptr<ByteSource> source, IStorage** storage);

// The class identifier of a root that Open gave.
HRESULT ReadClass(IStorage* storage, CLSID* classId);

}  // namespace compound

#endif  // TYPESCOUT_HOST_COMPOUND_READER_H
