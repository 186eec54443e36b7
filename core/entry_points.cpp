// The six exported functions; include/typescout/typescout.h is their contract.
#include <cstddef>
#include <span>

#include "core/dispatch.h"
#include "core/file_context.h"
#include "core/registry.h"
#include "typescout/typescout.h"

namespace typescout {
namespace {

// The file's own head bytes, or else the caller's. False when the call has nothing to look at.
bool LoadHead(const wchar_t* path, const unsigned char* buf, std::int32_t bufLen,
              FilterId requestedFilterId, FileContext* context) {
  return ReadHeadBytes(path, requestedFilterId, context) ||
         context->probed.UseCallerBytes(buf, bufLen);
}

std::span<int> List(int* first, int count) {
  if (first == nullptr || count <= 0) return {};
  return {first, static_cast<std::size_t>(count)};
}

}  // namespace
}  // namespace typescout

int TypeScoutFile(const wchar_t* path) {
  typescout::FileContext context;
  if (!typescout::ReadHeadBytes(path, 0, &context)) return 0;
  if (!typescout::ClassIdShortcut(&context)) typescout::ScanRegistry(&context);
  return context.result;
}

int CheckFiltersFromIDList(const wchar_t* path, int* const ids, int count, int bufLen,
                           unsigned char* buf, int requestedFilterId) {
  typescout::FileContext context;
  if (!typescout::LoadHead(path, buf, bufLen, requestedFilterId, &context)) return 0;
  const std::span<int> list = typescout::List(ids, count);
  for (int& id : list) id = typescout::FindRegistryIndex(id);
  typescout::ScanIndexList(&context, list);
  return context.result;
}

int CheckFiltersFromList(wchar_t* path, int* const indices, int count, int bufLen,
                         unsigned char* buf, int requestedFilterId) {
  typescout::FileContext context;
  if (!typescout::LoadHead(path, buf, bufLen, requestedFilterId, &context)) return 0;
  typescout::ScanIndexList(&context, typescout::List(indices, count));
  return context.result;
}

int CheckOneFilter(const wchar_t* path, int filterId, int requestedFilterId) {
  int id = filterId;
  return CheckFiltersFromIDList(path, &id, 1, 0, nullptr, requestedFilterId) == filterId ? 1 : 0;
}

int GetNumTypeScoutProcs() { return typescout::RegistrySize(); }

int CheckValidFilterID(int filterId) { return typescout::IsValidFilterId(filterId) ? 1 : 0; }
