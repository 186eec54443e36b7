// Reading a stream of a compound document.
#ifndef TYPESCOUT_DETECTORS_STREAM_READ_H
#define TYPESCOUT_DETECTORS_STREAM_READ_H

#include <span>

#include "core/byte_view.h"
#include "host/structured_storage.h"

namespace typescout {

// Opens the stream `name` of `storage` (may be null), reads its first bytes into `buffer`, as many
// as fit, and closes it. Returns a view of the bytes read; empty when there is no such stream or it
// does not open. When a read fails half-way, the view holds what was read before.
ByteView ReadStream(IStorage* storage, const wchar_t* name, std::span<unsigned char> buffer);

}  // namespace typescout

#endif  // TYPESCOUT_DETECTORS_STREAM_READ_H
