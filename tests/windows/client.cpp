// A program built with the platform's own compiler, through our header and our import library. It
// has no runtime of its own, so that nothing but the compiler is needed. exports.sh lays two GIF
// files beside it, of which somebody makes one long and short again for ever. Ends with 0, or with
// the number of the check that failed.
#include "typescout/typescout.h"

extern "C" [[noreturn]] __declspec(dllimport) void ExitProcess(unsigned int code);

namespace {

constexpr int GIF = 0x0305;
constexpr int GIF_ROW = 4;
constexpr unsigned long THROWN_BY_GCC = 0x20474343;

wchar_t path[] = L"whole.gif";

// The code of the exception that comes when the file becomes shorter under the module's eyes.
unsigned long AwaitException() {
  unsigned long code = 0;
  while (code == 0) {
    __try {
      TypeScoutFile(L"shrinking.gif");
    } __except (code = static_cast<unsigned long>(_exception_code()), 1) {
    }
  }
  return code;
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
  return 0;
}

}  // namespace

extern "C" void Start() { ExitProcess(static_cast<unsigned int>(Check())); }
