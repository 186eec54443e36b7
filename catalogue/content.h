// Content that is not in a file yet: how much of it a scan may look at.
#ifndef TYPESCOUT_CATALOGUE_CONTENT_H
#define TYPESCOUT_CATALOGUE_CONTENT_H

#include <cstddef>
#include <string_view>

#include "typescout/typescout.h"

namespace typescout::catalogue {

// The bytes at the start of a file that every row may look at.
inline constexpr std::size_t HEAD_SIZE = TYPESCOUT_HEAD_CAPACITY;

// Whether content begins as a compound document does; its first eight bytes tell.
bool IsCompoundDocument(std::string_view head);

// Whether a row may look beyond the first HEAD_SIZE bytes of content that begins with `head`: the
// streams of a compound document, the pictures of a GIF, the tags of a TIFF, and what the import
// modules of this project read of PDF and camera raw files. Everything else has the same answer
// from its head alone.
bool IsReadBeyondHead(std::string_view head);

}  // namespace typescout::catalogue

#endif  // TYPESCOUT_CATALOGUE_CONTENT_H
