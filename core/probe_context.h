// The record that every detector receives.
#ifndef TYPESCOUT_CORE_PROBE_CONTEXT_H
#define TYPESCOUT_CORE_PROBE_CONTEXT_H

#include <cstdint>

#include "core/byte_view.h"
#include "host/structured_storage.h"
#include "typescout/typescout.h"

namespace typescout {

// Names one import filter; bits 8 to 15 are its family. 0 means that nothing was recognised.
using FilterId = std::int32_t;

// The most bytes of a file that are read as its head.
inline constexpr std::int32_t HEAD_CAPACITY = TYPESCOUT_HEAD_CAPACITY;

struct FileContext;

// Built once a scan, read-only for the detectors. Everything that it points to outlives the scan.
struct ProbeContext {
  // Detectors look through Head() below, which gives 0 at and beyond `headLength`.
  const unsigned char* head;
  std::int32_t headLength;
  // The call's own copy of the path; null when the caller gave none.
  const wchar_t* path;
  // Always zero; the field is part of the record's fixed layout.
  CLSID classId;
  // The root of the file as a compound document, or null. A detector may open streams on it.
  IStorage* storage;
  FileContext* file;
};

// Answers non-zero when the file is of the detector's format. Keeps no state, reports no error.
using Detector = std::int32_t (*)(const ProbeContext* probe);

inline ByteView Head(const ProbeContext* probe) { return {probe->head, probe->headLength}; }

// The filter that the caller means to use; 0 when it named none.
FilterId RequestedFilter(const ProbeContext* probe);

// Releases all that the call holds. Only when an exception leaves the call without running its
// destructors (see TvnUtils::CallGuarded).
void ReleaseCall(const ProbeContext* probe);

}  // namespace typescout

#endif  // TYPESCOUT_CORE_PROBE_CONTEXT_H
