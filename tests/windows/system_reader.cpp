// system_reader FILE...: what the system's own reader makes of compound documents. One line each:
// the sizes of the streams "Long" and "Short" (-1: no such stream), or "does not open".
#include <objbase.h>

#include <cstdio>
#include <string>

namespace {

int SizeOf(IStorage* storage, const wchar_t* name) {
  IStream* stream = nullptr;
  if (storage->OpenStream(name, nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0, &stream) != S_OK) {
    return -1;
  }
  std::string bytes(60'000, '\0');
  ULONG read = 0;
  stream->Read(bytes.data(), static_cast<ULONG>(bytes.size()), &read);
  stream->Release();
  return static_cast<int>(read);
}

}  // namespace

int main(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    const std::string name = argv[i];
    const std::wstring path(name.begin(), name.end());
    IStorage* storage = nullptr;
    if (StgOpenStorage(path.c_str(), nullptr, STGM_READ | STGM_SHARE_DENY_WRITE, nullptr, 0,
                       &storage) == S_OK) {
      std::printf("%d %d\n", SizeOf(storage, L"Long"), SizeOf(storage, L"Short"));
      storage->Release();
    } else {
      std::puts("does not open");
    }
    std::fflush(stdout);
  }
  return 0;
}
