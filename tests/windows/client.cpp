// A program built with the platform's own compiler, through our header and our import library. It
// has no runtime of its own, so that nothing but the compiler is needed. Ends with 0, or with the
// number of the check that failed.
#include "typescout/typescout.h"

extern "C" {
__declspec(dllimport) void* CreateFileW(const wchar_t* path, unsigned long access,
                                        unsigned long sharing, void* security,
                                        unsigned long disposition, unsigned long flags, void* like);
__declspec(dllimport) int WriteFile(void* file, const void* bytes, unsigned long count,
                                    unsigned long* written, void* overlapped);
__declspec(dllimport) unsigned long SetFilePointer(void* file, long distance, long* high,
                                                   unsigned long origin);
__declspec(dllimport) int SetEndOfFile(void* file);
__declspec(dllimport) void* CreateThread(void* security, unsigned long long stack,
                                         unsigned long (*run)(void*), void* argument,
                                         unsigned long flags, unsigned long* id);
[[noreturn]] __declspec(dllimport) void ExitProcess(unsigned int code);
__declspec(dllimport) void Sleep(unsigned long milliseconds);
__declspec(dllimport) unsigned long GetTickCount();
}

namespace {

constexpr int GIF = 0x0305;
constexpr int GIF_ROW = 4;
constexpr unsigned long THROWN_BY_GCC = 0x20474343;

wchar_t path[] = L"client.gif";
// A picture whose data runs past what is read at first: blocks of 255 bytes, the last of them none.
unsigned char picture[24 + 256 * 256 + 2] = "GIF89a";

void* WritePicture() {
  constexpr unsigned long READ_AND_WRITE = 0xC0000000;
  constexpr unsigned long SHARED = 3;
  constexpr unsigned long CREATE_ALWAYS = 2;
  picture[13] = ',';
  picture[23] = 8;
  for (int i = 0; i < 256; ++i) picture[24 + 256 * i] = 255;
  picture[sizeof picture - 1] = ';';
  void* file = CreateFileW(path, READ_AND_WRITE, SHARED, nullptr, CREATE_ALWAYS, 0, nullptr);
  unsigned long written = 0;
  WriteFile(file, picture, sizeof picture, &written, nullptr);
  return written == sizeof picture ? file : nullptr;
}

// Makes the file long and short again for ever, so that it becomes shorter under somebody's eyes.
unsigned long Resize(void* file) {
  for (;;) {
    SetFilePointer(file, 48 << 20, nullptr, 0);
    SetEndOfFile(file);
    Sleep(3);
    SetFilePointer(file, 60000, nullptr, 0);
    SetEndOfFile(file);
  }
}

// The code of the exception that the module throws at last; 0 when none came in half a minute.
unsigned long AwaitException() {
  unsigned long code = 0;
  for (const unsigned long start = GetTickCount(); code == 0 && GetTickCount() - start < 30000;) {
    __try {
      TypeScoutFile(path);
    } __except (code = static_cast<unsigned long>(_exception_code()), 1) {
    }
  }
  return code;
}

int Check() {
  if (GetNumTypeScoutProcs() != 108) return 1;
  if (CheckValidFilterID(GIF) != 1) return 2;
  void* file = WritePicture();
  if (file == nullptr) return 3;
  if (TypeScoutFile(path) != GIF) return 4;
  if (CheckOneFilter(path, GIF, 0) != 1) return 5;
  int ids[] = {GIF};
  if (CheckFiltersFromIDList(path, ids, 1, 0, nullptr, 0) != GIF) return 6;
  if (ids[0] != GIF_ROW) return 7;
  if (CheckFiltersFromList(path, ids, 1, 0, nullptr, 0) != GIF) return 8;

  if (CreateThread(nullptr, 0, Resize, file, 0, nullptr) == nullptr) return 9;
  if (AwaitException() != THROWN_BY_GCC) return 10;
  return 0;
}

}  // namespace

extern "C" void Start() { ExitProcess(static_cast<unsigned int>(Check())); }
