#include "core/dispatch.h"

#include "core/registry.h"

namespace typescout {
namespace {

ProbeContext MakeProbe(FileContext* context, std::int32_t headLength, IStorage* storage) {
  return {.head = context->head,
          .headLength = headLength,
          .path = context->path,
          .classId = {},
          .storage = storage,
          .file = context};
}

std::int32_t AskRow(const DetectorEntry& row, const ProbeContext& probe) {
  const std::int32_t answer = row.detect(&probe);
  if (answer != 0) probe.file->result = row.filterId;
  return answer;
}

}  // namespace

std::int32_t ScanRegistry(FileContext* context, std::int32_t headLength) {
  const InterfaceOwner<IStorage> storage = OpenCompoundFile(context->path);
  const ProbeContext probe = MakeProbe(context, headLength, storage.get());
  for (const DetectorEntry& row : DetectorRegistry) {
    if (const std::int32_t answer = AskRow(row, probe); answer != 0) return answer;
  }
  return 0;
}

std::int32_t ScanIndexList(FileContext* context, std::int32_t headLength,
                           std::span<const int> indices) {
  const InterfaceOwner<IStorage> storage = OpenCompoundFile(context->path);
  const ProbeContext probe = MakeProbe(context, headLength, storage.get());
  for (const int index : indices) {
    if (index < 0 || index >= REGISTRY_SIZE) continue;
    const DetectorEntry& row = DetectorRegistry[static_cast<std::size_t>(index)];
    if (const std::int32_t answer = AskRow(row, probe); answer != 0) return answer;
  }
  return 0;
}

}  // namespace typescout
