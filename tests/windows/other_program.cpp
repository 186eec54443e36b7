#include "tests/windows/other_program.h"

#include <objbase.h>
#include <windows.h>

namespace typescout::tests {
namespace {

DWORD Rights(Access access) {
  return ((access & READS) != 0 ? GENERIC_READ : 0) | ((access & WRITES) != 0 ? GENERIC_WRITE : 0) |
         ((access & DELETES) != 0 ? DELETE : 0);
}

DWORD Sharing(Access access) {
  return ((access & READS) != 0 ? FILE_SHARE_READ : 0) |
         ((access & WRITES) != 0 ? FILE_SHARE_WRITE : 0) |
         ((access & DELETES) != 0 ? FILE_SHARE_DELETE : 0);
}

constexpr DWORD NEW_FOR_WRITING = STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE;

bool WriteStream(IStorage* storage, const std::wstring& name, const std::string& content) {
  IStream* stream = nullptr;
  if (storage->CreateStream(name.c_str(), NEW_FOR_WRITING, 0, 0, &stream) != S_OK) return false;
  ULONG written = 0;
  stream->Write(content.data(), static_cast<ULONG>(content.size()), &written);
  stream->Release();
  return written == content.size();
}

}  // namespace

HeldFile::HeldFile(const std::filesystem::path& path, Access what, Access others)
    : handle_(CreateFileW(path.c_str(), Rights(what), Sharing(others), nullptr, OPEN_EXISTING, 0,
                          nullptr)) {}
HeldFile::~HeldFile() {
  if (IsHeld()) CloseHandle(handle_);
}

bool HeldFile::IsHeld() const { return handle_ != INVALID_HANDLE_VALUE; }

bool HeldFile::Lock(std::uint32_t first, std::uint32_t count) const {
  OVERLAPPED at = {};
  at.Offset = first;
  constexpr DWORD AT_ONCE = LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY;
  return LockFileEx(handle_, AT_ONCE, 0, count, 0, &at) != 0;
}

WaitingPipe::WaitingPipe(const wchar_t* name)
    : handle_(CreateNamedPipeW(name, PIPE_ACCESS_DUPLEX, PIPE_TYPE_BYTE | PIPE_WAIT, 1, 0, 0, 0,
                               nullptr)) {}
WaitingPipe::~WaitingPipe() { CloseHandle(handle_); }

LoadedModule::LoadedModule(const std::filesystem::path& path)
    : module_(LoadLibraryW(path.c_str())) {}
LoadedModule::~LoadedModule() {
  if (IsLoaded()) FreeLibrary(static_cast<HMODULE>(module_));
}

std::uint32_t OpenDocumentAnswer(const std::filesystem::path& path, std::uint32_t mode) {
  IStorage* storage = nullptr;
  const HRESULT answer = StgOpenStorage(path.c_str(), nullptr, mode, nullptr, 0, &storage);
  if (storage != nullptr) storage->Release();
  return static_cast<std::uint32_t>(answer);
}

bool WriteDocument(const std::filesystem::path& path, const std::wstring& rootClass,
                   const std::map<std::wstring, std::string>& streams) {
  IStorage* storage = nullptr;
  if (StgCreateDocfile(path.c_str(), NEW_FOR_WRITING, 0, &storage) != S_OK) return false;
  bool isWritten = true;
  if (!rootClass.empty()) {
    CLSID id = {};
    isWritten =
        CLSIDFromString(rootClass.c_str(), &id) == S_OK && WriteClassStg(storage, id) == S_OK;
  }
  for (const auto& [name, content] : streams) {
    isWritten = WriteStream(storage, name, content) && isWritten;
  }
  storage->Release();
  return isWritten;
}

}  // namespace typescout::tests
