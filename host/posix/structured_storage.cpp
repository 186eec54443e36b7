#include "host/structured_storage.h"

#include <cerrno>
#include <memory>
#include <new>

#include "host/compound/reader.h"
#include "host/posix/regular_file.h"

namespace {

class FileSource final : public compound::ByteSource {
 public:
  bool Open(const wchar_t* path) { return file_.Open(path); }
  std::size_t ReadAt(std::uint64_t offset, void* bytes, std::size_t count) const override {
    return file_.ReadAt(offset, bytes, count);
  }
  std::uint64_t size() const override { return file_.size(); }

 private:
  posix_host::RegularFile file_;
};

// Why a file did not open.
HRESULT LastError() {
  return errno == EACCES || errno == EPERM ? STG_E_ACCESSDENIED : STG_E_FILENOTFOUND;
}

}  // namespace

HRESULT StgIsStorageFile(const wchar_t* path) {
  FileSource file;
  if (!file.Open(path)) return LastError();
  return compound::HasSignature(file) ? S_OK : S_FALSE;
}

// The sharing modes mean nothing here. POSIX has no mandatory lock: a document that is changed
// meanwhile reads as damaged.
HRESULT StgOpenStorage(const wchar_t* path, IStorage* /*priority*/, std::uint32_t /*mode*/,
                       wchar_t** /*exclusions*/, std::uint32_t /*reserved*/, IStorage** storage) {
  *storage = nullptr;
  std::unique_ptr<FileSource> file(new (std::nothrow) FileSource);
  if (file == nullptr) return STG_E_INSUFFICIENTMEMORY;
  if (!file->Open(path)) return LastError();
  return compound::Open(std::move(file), storage);
}

extern "C" HRESULT ReadClassStg(IStorage* storage, CLSID* classId) {
  return compound::ReadClass(storage, classId);
}
