// Compound documents are opened by the system, except those whose structure keeps its reader from
// ending.
#include "host/structured_storage.h"

#include <algorithm>
#include <memory>
#include <new>

#include "host/compound/check.h"
#include "host/compound/reader.h"
#include "host/owners.h"
#include "host/windows/quiet_errors.h"

// The system's functions. Its headers declare the same types as host/structured_storage.h, so both
// cannot be included.
extern "C" {
HRESULT SystemIsStorageFile(const wchar_t* path) __asm__("StgIsStorageFile");
HRESULT SystemOpenStorage(const wchar_t* path, IStorage* priority, std::uint32_t mode,
                          wchar_t** exclusions, std::uint32_t reserved,
                          IStorage** storage) __asm__("StgOpenStorage");
}

namespace {

class FileSource final : public compound::ByteSource {
 public:
  bool Open(const wchar_t* path) { return file_.Open(path); }
  std::size_t ReadAt(std::uint64_t offset, void* bytes, std::size_t count) const override {
    if (file_->Seek(offset, 0) != offset) return 0;
    constexpr std::size_t MOST = 0x7FFF'FFFF;
    return file_->Read(bytes, static_cast<std::uint32_t>(std::min(count, MOST)));
  }
  std::uint64_t size() const override { return file_->GetLength(); }

 private:
  typescout::FileOwner file_;
};

// Whether the system's reader ends with the file: it follows circles without end. A file that
// cannot be opened here or has another signature is left to the system, which refuses it or reads
// no further.
bool IsSafe(const wchar_t* path) {
  std::unique_ptr<FileSource> file(new (std::nothrow) FileSource);
  if (file == nullptr) return false;
  if (!file->Open(path) || !compound::HasSignature(*file)) return true;
  return compound::IsSound(std::move(file));
}

}  // namespace

HRESULT StgIsStorageFile(const wchar_t* path) {
  const windows_host::QuietErrors quiet;
  return SystemIsStorageFile(path);
}

HRESULT StgOpenStorage(const wchar_t* path, IStorage* priority, std::uint32_t mode,
                       wchar_t** exclusions, std::uint32_t reserved, IStorage** storage) {
  *storage = nullptr;
  const windows_host::QuietErrors quiet;
  if (!IsSafe(path)) return STG_E_INVALIDHEADER;
  return SystemOpenStorage(path, priority, mode, exclusions, reserved, storage);
}
