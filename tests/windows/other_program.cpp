#include "tests/windows/other_program.h"

#include <malloc.h>
#include <objbase.h>
#include <windows.h>

#include <thread>

namespace typescout::tests {
namespace {

static_assert(READS == FILE_SHARE_READ && WRITES == FILE_SHARE_WRITE &&
              DELETES == FILE_SHARE_DELETE);

Held HoldHandle(HANDLE handle) {
  return {handle == INVALID_HANDLE_VALUE ? nullptr : handle, [](void* held) { CloseHandle(held); }};
}

}  // namespace

Held HoldFile(const std::filesystem::path& path, Access what, Access others) {
  const DWORD rights = ((what & READS) != 0 ? GENERIC_READ : 0) |
                       ((what & WRITES) != 0 ? GENERIC_WRITE : 0) |
                       ((what & DELETES) != 0 ? DELETE : 0);
  return HoldHandle(CreateFileW(path.c_str(), rights, others, nullptr, OPEN_EXISTING, 0, nullptr));
}

bool Lock(const Held& file, std::uint32_t first, std::uint32_t count) {
  OVERLAPPED at = {};
  at.Offset = first;
  constexpr DWORD AT_ONCE = LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY;
  return LockFileEx(file.get(), AT_ONCE, 0, count, 0, &at) != 0;
}

Held HoldPipe(const wchar_t* name) {
  return HoldHandle(
      CreateNamedPipeW(name, PIPE_ACCESS_DUPLEX, PIPE_TYPE_BYTE | PIPE_WAIT, 1, 0, 0, 0, nullptr));
}

Held HoldModule(const std::filesystem::path& path) {
  return {LoadLibraryW(path.c_str()),
          [](void* module) { FreeLibrary(static_cast<HMODULE>(module)); }};
}

bool ScanTwice(const Held& module, const std::filesystem::path& file, int* answer) {
  using Scan = int (*)(const wchar_t*);
  const auto scan = reinterpret_cast<Scan>(reinterpret_cast<void*>(
      GetProcAddress(static_cast<HMODULE>(module.get()), "?TypeScoutFile@@YAHPEB_W@Z")));
  if (scan == nullptr) return false;
  int other = 0;
  std::thread([&] { other = scan(file.c_str()); }).join();
  *answer = scan(file.c_str());
  return *answer == other;
}

std::size_t HeapInUse() {
  std::size_t sum = 0;
  PROCESS_HEAP_ENTRY entry = {};
  while (HeapWalk(reinterpret_cast<HANDLE>(_get_heap_handle()), &entry) != 0) {
    if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) sum += entry.cbData;
  }
  return sum;
}

bool IsModuleLoaded(const std::filesystem::path& path) {
  return GetModuleHandleW(path.c_str()) != nullptr;
}

std::uint32_t OpenDocumentAnswer(const std::filesystem::path& path, std::uint32_t mode) {
  IStorage* storage = nullptr;
  const HRESULT answer = StgOpenStorage(path.c_str(), nullptr, mode, nullptr, 0, &storage);
  if (storage != nullptr) storage->Release();
  return static_cast<std::uint32_t>(answer);
}

bool WriteDocument(const std::filesystem::path& path, const std::wstring& rootClass,
                   const std::map<std::wstring, std::string>& streams, std::size_t piece) {
  constexpr DWORD FOR_WRITING = STGM_READWRITE | STGM_SHARE_EXCLUSIVE;
  IStorage* storage = nullptr;
  if (StgCreateDocfile(path.c_str(), STGM_CREATE | FOR_WRITING, 0, &storage) != S_OK) return false;
  CLSID id = {};
  bool isWritten = rootClass.empty() || (CLSIDFromString(rootClass.c_str(), &id) == S_OK &&
                                         WriteClassStg(storage, id) == S_OK);
  bool isMore = true;
  for (std::size_t at = 0; isMore && isWritten; at += piece) {
    isMore = false;
    for (const auto& [name, content] : streams) {
      if (at >= content.size() && at > 0) continue;
      IStream* stream = nullptr;
      isWritten =
          isWritten &&
          (at == 0 ? storage->CreateStream(name.c_str(), FOR_WRITING, 0, 0, &stream)
                   : storage->OpenStream(name.c_str(), nullptr, FOR_WRITING, 0, &stream)) == S_OK;
      if (stream == nullptr) continue;
      const std::string next = content.substr(at, piece);
      ULONG written = 0;
      stream->Seek({}, STREAM_SEEK_END, nullptr);
      stream->Write(next.data(), static_cast<ULONG>(next.size()), &written);
      stream->Release();
      isWritten = isWritten && written == next.size();
      isMore = isMore || content.size() - at > piece;
    }
  }
  storage->Release();
  return isWritten;
}

}  // namespace typescout::tests
