// A program built with the platform's own compiler, through our header and our import library. It
// has no runtime but the system's msvcrt, so that nothing but the compiler is needed. exports.sh
// lays beside it: two GIF files, one of which a script lengthens and shortens all the time, two PDF
// files, two compound documents, and the modules that raise exceptions (raising_module.cpp). Ends
// with 0, or with the number of the check that failed.
#include "tests/windows/raised.h"
#include "typescout/typescout.h"

using Handle = void*;

struct HeapEntry {
  void* data;
  unsigned long size;
  unsigned char overhead, region;
  unsigned short flags;
  void* rest[4];
};

extern "C" {
[[noreturn]] __declspec(dllimport) void ExitProcess(unsigned int code);
__declspec(dllimport) Handle
    CreateFileW(const wchar_t* path, unsigned long access, unsigned long share, void* security,
                unsigned long creation, unsigned long flags, Handle templateFile);
__declspec(dllimport) int CloseHandle(Handle handle);
__declspec(dllimport) unsigned long GetFullPathNameW(const wchar_t* path, unsigned long capacity,
                                                     wchar_t* full, wchar_t** name);
__declspec(dllimport) int SetEnvironmentVariableW(const wchar_t* name, const wchar_t* value);
__declspec(dllimport) int HeapWalk(Handle heap, HeapEntry* entry);
__declspec(dllimport) long long _get_heap_handle();
}

// The compiler's descriptions of types refer to this; the runtime compares names alone.
extern "C" void* const theTypeInfo __asm__("??_7type_info@@6B@") = nullptr;

namespace {

constexpr int GIF = 0x0305;
constexpr int GIF_ROW = 4;
constexpr int CAMERA_RAW = 0x0337;
constexpr int ILLUSTRATOR_PDF = 0x0535;
constexpr unsigned long THROWN_BY_GCC = 0x20474343;

wchar_t path[] = L"whole.gif";

// The code of the structured exception that asking about the filter raises; 0 when it raises none.
unsigned long CodeRaised(const wchar_t* file, int filter) {
  unsigned long code = 0;
  __try {
    CheckOneFilter(file, filter, 0);
  } __except (code = static_cast<unsigned long>(_exception_code()), 1) {
  }
  return code;
}

// The same once the file becomes shorter while it is examined.
unsigned long AwaitException() {
  unsigned long code = 0;
  while (code == 0) code = CodeRaised(L"shrinking.gif", GIF);
  return code;
}

int ValueThrown(const wchar_t* file, int filter) {
  try {
    CheckOneFilter(file, filter, 0);
  } catch (const Raised& raised) {
    return raised.value;
  }
  return 0;
}

// Whether no program has the file open.
bool IsFree(const wchar_t* file) {
  constexpr unsigned long READ = 0x80000000, OPEN_EXISTING = 3;
  const Handle handle = CreateFileW(file, READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  if (handle == reinterpret_cast<Handle>(-1)) return false;
  return CloseHandle(handle) != 0;
}

unsigned long long HeapInUse() {
  constexpr unsigned short BUSY = 4;
  unsigned long long sum = 0;
  HeapEntry entry = {};
  while (HeapWalk(reinterpret_cast<Handle>(_get_heap_handle()), &entry) != 0) {
    if ((entry.flags & BUSY) != 0) sum += entry.size;
  }
  return sum;
}

// Exceptions of a module's that are none of our runtime's: everything is released.
int CheckRaisingModules() {
  constexpr int TIMES = 100;
  unsigned long long before = 0;
  for (int i = 0; i < TIMES; ++i) {
    if (CodeRaised(L"document-", CAMERA_RAW) != THE_CODE) return 10;
    if (!IsFree(L"document-")) return 11;
    if (ValueThrown(L"document+", CAMERA_RAW) != THE_VALUE) return 12;
    if (!IsFree(L"document+")) return 13;
    if (CodeRaised(L"pdf-", ILLUSTRATOR_PDF) != THE_CODE) return 14;
    if (ValueThrown(L"pdf+", ILLUSTRATOR_PDF) != THE_VALUE) return 15;
    if (i == 0) before = HeapInUse();
  }
  if (HeapInUse() > before + 20 * TIMES) return 16;  // a call holds far more than 20 bytes
  // A module built with the same compiler as ours.
  wchar_t folder[260];
  if (GetFullPathNameW(L"gcc", 260, folder, nullptr) == 0) return 17;
  SetEnvironmentVariableW(L"TVN_FILTERS_DIR", folder);
  return CodeRaised(L"pdf-", ILLUSTRATOR_PDF) == THROWN_BY_GCC ? 0 : 18;
}

int Check() {
  if (GetNumTypeScoutProcs() <= GIF_ROW) return 1;
  if (CheckValidFilterID(GIF) != 1) return 2;
  if (TypeScoutFile(path) != GIF) return 3;
  if (CheckOneFilter(path, GIF, 0) != 1) return 4;
  int ids[] = {GIF};
  if (CheckFiltersFromIDList(path, ids, 1, 0, nullptr, 0) != GIF) return 5;
  if (ids[0] != GIF_ROW) return 6;
  if (CheckFiltersFromList(path, ids, 1, 0, nullptr, 0) != GIF) return 7;
  if (AwaitException() != THROWN_BY_GCC) return 8;
  return CheckRaisingModules();
}

}  // namespace

extern "C" void Start() { ExitProcess(static_cast<unsigned int>(Check())); }
