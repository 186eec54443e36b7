#include "core/file_context.h"

#include <cstring>
#include <memory>

#include "core/registry.h"
#include "host/handle.h"
#include "host/strings.h"

namespace typescout {

FilterId RequestedFilter(const ProbeContext* probe) {
  return probe->file == nullptr ? 0 : probe->file->requestedFilterId;
}

void ReleaseCall(const ProbeContext* probe) {
  if (probe->file != nullptr) std::destroy_at(probe->file);
}

FileContext::~FileContext() {
  if (handle != nullptr) CloseHandle(handle);
}

bool ReadHeadBytes(const wchar_t* path, FilterId requestedFilterId, FileContext* context) {
  context->requestedFilterId = requestedFilterId;
  if (path == nullptr) return false;
  context->path = TvnUtl::StringCopy(context->pathCopy.data(), PATH_CAPACITY, path);
  FileOwner file;
  return file.Open(context->path) && context->probed.ReadHead(file);
}

bool ClassIdShortcut(FileContext* context) {
  IStorage* const document =
      context->probed.Document(context->path, ProbedFile::WhenLocked::GIVE_UP);
  if (document == nullptr) return false;
  CLSID classId = {};
  ReadClassStg(document, &classId);  // a failure leaves it all zero
  CLSID drawingObject = {};
  if (CLSIDFromString(DRAWING_OBJECT_CLASS, &drawingObject) != S_OK) return false;
  if (std::memcmp(&classId, &drawingObject, sizeof classId) != 0) return false;
  context->result = DRAWING_OBJECT;
  return true;
}

}  // namespace typescout
