// Fuzz target: arbitrary head bytes, as a caller hands them over, against every row and the scan.
// The first byte chooses the filter that the caller means to use.
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <vector>

#include "core/file_context.h"
#include "core/registry.h"
#include "host/memory/memory_host.h"
#include "typescout/typescout.h"

namespace {

constexpr typescout::FilterId REQUESTED[] = {0, 0x0503, 0x0509, 0x0519, 0x0535};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  memory_host::Reset();
  typescout::FileContext file;
  file.requestedFilterId = REQUESTED[data[0] % std::size(REQUESTED)];
  const auto length = static_cast<std::int32_t>(size - 1);
  const typescout::ProbeContext probe = {.head = data + 1,
                                         .headLength = length,
                                         .path = nullptr,
                                         .classId = {},
                                         .storage = nullptr,
                                         .file = &file};
  // The filter of the first row that says yes, asked one by one.
  typescout::FilterId first = 0;
  std::vector<int> ids;
  for (const typescout::DetectorEntry& row : typescout::DetectorRegistry) {
    ids.push_back(row.filterId);
    if (row.detect(&probe) != 0 && first == 0) first = row.filterId;
  }
  const int scanned =
      CheckFiltersFromIDList(nullptr, ids.data(), static_cast<int>(ids.size()), length,
                             const_cast<std::uint8_t*>(data + 1), file.requestedFilterId);
  // The rows by their identifiers: those of a detector that answers several come out as asked.
  if (scanned != first || memory_host::TheMachine().OpenObjects() != 0) std::abort();
  return 0;
}
