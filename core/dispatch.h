// The two scans: every row of the registry in its order, or the caller's rows in the caller's.
#ifndef TYPESCOUT_CORE_DISPATCH_H
#define TYPESCOUT_CORE_DISPATCH_H

#include <cstdint>
#include <span>

#include "core/file_context.h"

namespace typescout {

// Opens the compound document when the file is one, asks row after row, and stops at the first yes:
// its filter identifier goes into `context->result`, its detector's answer is returned. 0 when no
// row accepts the file. What a detector throws passes through. `context` has a head.
std::int32_t ScanRegistry(FileContext* context);

// The same for the registry rows named by `indices`, in that order. An index outside the registry
// is skipped.
std::int32_t ScanIndexList(FileContext* context, std::span<const int> indices);

}  // namespace typescout

#endif  // TYPESCOUT_CORE_DISPATCH_H
