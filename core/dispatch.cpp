#include "core/dispatch.h"

#include "core/registry.h"

namespace typescout {
namespace {

ProbeContext MakeProbe(FileContext* context) {
  ProbedFile& probed = context->probed;
  return {.head = probed.HeadBytes(),
          .headLength = probed.HeadLength(),
          .path = context->path,
          .classId = {},
          .storage = probed.Document(context->path, ProbedFile::WhenLocked::SHARE),
          .file = context};
}

std::int32_t AskRow(const DetectorEntry& row, const ProbeContext& probe) {
  const std::int32_t answer = row.detect(&probe);
  if (answer != 0) probe.file->result = row.filterId;
  return answer;
}

}  // namespace

std::int32_t ScanRegistry(FileContext* context) {
  const ProbeContext probe = MakeProbe(context);
  for (const DetectorEntry& row : DetectorRegistry) {
    if (const std::int32_t answer = AskRow(row, probe); answer != 0) return answer;
  }
  return 0;
}

std::int32_t ScanIndexList(FileContext* context, std::span<const int> indices) {
  const ProbeContext probe = MakeProbe(context);
  for (const int index : indices) {
    if (index < 0 || index >= RegistrySize()) continue;
    const DetectorEntry& row = DetectorRegistry[static_cast<std::size_t>(index)];
    if (const std::int32_t answer = AskRow(row, probe); answer != 0) return answer;
  }
  return 0;
}

}  // namespace typescout
