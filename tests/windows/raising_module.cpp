// The decoder and the PDF module of the suite, built with the platform's own compiler. They raise
// exceptions that our own compiler's runtime does not handle: a C++ exception of that compiler's
// for a path that ends in '+', else a structured exception.
#include "tests/windows/raised.h"

extern "C" __declspec(dllimport) void RaiseException(unsigned long code, unsigned long flags,
                                                     unsigned long count, const void* arguments);

// The compiler's own description of a type refers to this; the runtime compares names alone.
extern "C" void* const theTypeInfo __asm__("??_7type_info@@6B@") = nullptr;

namespace {

int Raise(const wchar_t* path) {
  while (path[0] != 0 && path[1] != 0) ++path;
  if (*path == L'+') throw Raised{THE_VALUE};
  RaiseException(THE_CODE, 0, 0, nullptr);
  return 0;
}

}  // namespace

extern "C" __declspec(dllexport) int CheckForRaw(const wchar_t* path) { return Raise(path); }

extern "C" __declspec(dllexport) int GetAINativeData(const wchar_t** query, void* /*reserved*/,
                                                     unsigned* /*flags*/) {
  return Raise(*query);
}
