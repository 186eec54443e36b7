#include "host/structured_storage.h"

extern "C" {

HRESULT StgIsStorageFile(const wchar_t* /*path*/) { return S_FALSE; }
HRESULT StgOpenStorage(const wchar_t* /*path*/, IStorage* /*priority*/, std::uint32_t /*mode*/,
                       wchar_t** /*exclusions*/, std::uint32_t /*reserved*/, IStorage** storage) {
  *storage = nullptr;
  return STG_E_FILENOTFOUND;
}
HRESULT ReadClassStg(IStorage* /*storage*/, CLSID* classId) {
  *classId = {};
  return STG_E_FILENOTFOUND;
}

}  // extern "C"
