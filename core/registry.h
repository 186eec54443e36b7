// The registry: one row for every filter, in the order in which a full scan asks them.
#ifndef TYPESCOUT_CORE_REGISTRY_H
#define TYPESCOUT_CORE_REGISTRY_H

#include <array>

#include "core/probe_context.h"

namespace typescout {

struct DetectorEntry {
  FilterId filterId;
  Detector detect;
};

inline constexpr int REGISTRY_SIZE = 108;

extern const std::array<DetectorEntry, REGISTRY_SIZE> DetectorRegistry;

// Says no to every file. Its rows are identifiers that applications know but no file is ever
// reported as; row 0 is one of them, so that an unknown identifier, which maps to 0, never matches.
std::int32_t DetectNever(const ProbeContext* probe);

// The index of the first row with this identifier; 0 when no row has it.
int FindRegistryIndex(FilterId filterId);

// Whether the identifier is one of the suite's: a row has it, it is one of the fifteen without a
// row, or it lies above 0x3000.
bool IsValidFilterId(FilterId filterId);

}  // namespace typescout

#endif  // TYPESCOUT_CORE_REGISTRY_H
