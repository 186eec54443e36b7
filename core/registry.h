// The registry: one row for every filter, in the order in which a full scan asks them.
#ifndef TYPESCOUT_CORE_REGISTRY_H
#define TYPESCOUT_CORE_REGISTRY_H

#include <span>

#include "core/probe_context.h"

namespace typescout {

struct DetectorEntry {
  FilterId filterId;
  Detector detect;
};

// A row's place is its index in CheckFiltersFromList.
extern const std::span<const DetectorEntry> DetectorRegistry;

inline int RegistrySize() { return static_cast<int>(DetectorRegistry.size()); }

// The class identifier of the suite's drawing objects, which other applications embed as compound
// documents, and what a full scan reports them as. No row has the identifier.
inline constexpr const wchar_t* DRAWING_OBJECT_CLASS = L"{DE14F420-AC1C-11CE-BE26-DB67235E2689}";
inline constexpr FilterId DRAWING_OBJECT = 0x0706;

// Accepts no file. Its rows are identifiers that applications know but no file is ever
// reported as; row 0 is one of them, so that an unknown identifier, which maps to 0, never matches.
std::int32_t DetectNever(const ProbeContext* probe);

// The index of the first row with this identifier; 0 when no row has it.
int FindRegistryIndex(FilterId filterId);

// Whether the identifier is one of the suite's: a row has it, it is one of the fifteen without a
// row, or it lies above 0x3000.
bool IsValidFilterId(FilterId filterId);

}  // namespace typescout

#endif  // TYPESCOUT_CORE_REGISTRY_H
