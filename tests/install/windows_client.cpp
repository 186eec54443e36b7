// A program for Windows without a C library: 0 when the library recognises holiday.gif.
#include <typescout/typescout.h>

extern "C" [[noreturn]] __declspec(dllimport) void ExitProcess(unsigned int code);

extern "C" void Start() { ExitProcess(TypeScoutFile(L"holiday.gif") == 0x0305 ? 0 : 1); }
