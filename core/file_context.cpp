#include "core/file_context.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "host/handle.h"
#include "host/strings.h"

namespace typescout {
namespace {

// The suite's drawing objects, as other applications embed them.
constexpr const wchar_t* DRAWING_OBJECT_CLASS = L"{DE14F420-AC1C-11CE-BE26-DB67235E2689}";
constexpr FilterId DRAWING_OBJECT = 0x0706;

constexpr std::uint32_t SHARE_DENYING_WRITERS = STGM_READ | STGM_SHARE_DENY_WRITE;
constexpr std::uint32_t SHARE_WITH_WRITERS = STGM_READ | STGM_SHARE_DENY_NONE | STGM_TRANSACTED;

// A buffer of `capacity` bytes, of which the first `used` are still to be written and the rest are
// zero; null when memory runs out.
unsigned char* NewHead(std::size_t capacity, std::size_t used) {
  auto* head = new (std::nothrow) unsigned char[capacity];
  if (head != nullptr) std::memset(head + used, 0, capacity - used);
  return head;
}

}  // namespace

FilterId RequestedFilter(const ProbeContext* probe) {
  return probe->file == nullptr ? 0 : probe->file->requestedFilterId;
}

FileContext::~FileContext() {
  delete[] head;
  if (handle != nullptr) CloseHandle(handle);
  delete[] path;
}

bool ReadHeadBytes(const wchar_t* path, FilterId requestedFilterId, FileContext* context,
                   std::int32_t* headLength) {
  context->requestedFilterId = requestedFilterId;
  if (path == nullptr) return false;
  context->path = new (std::nothrow) wchar_t[PATH_CAPACITY]();
  if (context->path == nullptr) return false;
  TvnUtl::StringCopy(context->path, PATH_CAPACITY, path);

  FileOwner file;
  if (!file.Open(context->path)) return false;
  const auto wanted =
      static_cast<std::uint32_t>(std::min<std::uint64_t>(file->GetLength(), HEAD_CAPACITY));
  context->head = NewHead(HEAD_CAPACITY, wanted);
  if (context->head == nullptr) return false;
  file->SeekToBegin();
  if (file->Read(context->head, wanted) != wanted) {
    delete[] context->head;
    context->head = nullptr;
    return false;
  }
  context->headLength = wanted;
  *headLength = static_cast<std::int32_t>(wanted);
  return true;
}

bool UseCallerBytes(const unsigned char* bytes, std::int32_t length, FileContext* context) {
  if (bytes == nullptr || length < 0) return false;
  const auto used = static_cast<std::size_t>(length);
  context->head = NewHead(std::max<std::size_t>(used, HEAD_CAPACITY), used);
  if (context->head == nullptr) return false;
  std::memcpy(context->head, bytes, used);
  return true;
}

InterfaceOwner<IStorage> OpenCompoundFile(const wchar_t* path) {
  InterfaceOwner<IStorage> storage;
  if (path == nullptr || StgIsStorageFile(path) != S_OK) return storage;
  const HRESULT opened =
      StgOpenStorage(path, nullptr, SHARE_DENYING_WRITERS, nullptr, 0, storage.Receive());
  if (opened == STG_E_ACCESSDENIED || opened == STG_E_LOCKVIOLATION) {
    StgOpenStorage(path, nullptr, SHARE_WITH_WRITERS, nullptr, 0, storage.Receive());
  }
  return storage;
}

bool ClassIdShortcut(FileContext* context) {
  if (context->path == nullptr || StgIsStorageFile(context->path) != S_OK) return false;
  CLSID classId = {};
  {
    InterfaceOwner<IStorage> storage;
    if (StgOpenStorage(context->path, nullptr, SHARE_DENYING_WRITERS, nullptr, 0,
                       storage.Receive()) != S_OK) {
      return false;
    }
    if (ReadClassStg(storage.get(), &classId) != S_OK) classId = {};
  }
  CLSID drawingObject = {};
  if (CLSIDFromString(DRAWING_OBJECT_CLASS, &drawingObject) != S_OK) return false;
  if (std::memcmp(&classId, &drawingObject, sizeof classId) != 0) return false;
  context->result = DRAWING_OBJECT;
  return true;
}

}  // namespace typescout
