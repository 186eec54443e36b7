// Whether a compound document is sound enough for other readers of the format.
#ifndef TYPESCOUT_HOST_COMPOUND_CHECK_H
#define TYPESCOUT_HOST_COMPOUND_CHECK_H

#include <memory>

#include "host/compound/byte_source.h"

namespace compound {

// Whether a reader that does not check the document's structure still ends. False when
// - our own reader would not open it;
// - the chain of the directory, of the mini stream, of its table or of the DIFAT leaves the file or
//   is a circle, or the DIFAT has more sectors than the file;
// - the links among the entries below the root do not form a tree;
// - the chain of a stream below the root is a circle;
// - it has more than 4,194,304 sectors (2 GB in sectors of 512 bytes, which the format does not
//   exceed) or as many entries;
// - memory runs out.
// Other damage is allowed. Each sector of the allocation table and of the directory is read once,
// or a few times where chains jump; no more than twice the file's sectors are followed. Throws
// nothing.
bool IsSound(std::unique_ptr<ByteSource> source);

}  // namespace compound

#endif  // TYPESCOUT_HOST_COMPOUND_CHECK_H
