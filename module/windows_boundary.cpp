// The six functions as the Windows module exports them (typescout.def): the same, except for how
// the one exception leaves.
//
// A program of another compiler's can take the exception only as a structured one, and then undoes
// the frames below it by its own rules; ours must not be among them with something to release,
// since only our own runtime can go on after that. So everything is released first, and the
// exception starts anew from a frame that holds nothing. A program of our own compiler's notices no
// difference.
#include "typescout/typescout.h"

namespace {

template <typename Function, typename... Arguments>
int Call(Function function, Arguments... arguments) {
  int thrown = 0;
  try {
    return function(arguments...);
  } catch (int value) {
    thrown = value;
  }
  throw thrown;
}

}  // namespace

extern "C" {

int ExportedTypeScoutFile(const wchar_t* path) { return Call(TypeScoutFile, path); }

int ExportedCheckFiltersFromIDList(const wchar_t* path, int* const ids, int count, int bufLen,
                                   unsigned char* buf, int requestedFilterId) {
  return Call(CheckFiltersFromIDList, path, ids, count, bufLen, buf, requestedFilterId);
}

int ExportedCheckFiltersFromList(wchar_t* path, int* const indices, int count, int bufLen,
                                 unsigned char* buf, int requestedFilterId) {
  return Call(CheckFiltersFromList, path, indices, count, bufLen, buf, requestedFilterId);
}

int ExportedCheckOneFilter(const wchar_t* path, int filterId, int requestedFilterId) {
  return Call(CheckOneFilter, path, filterId, requestedFilterId);
}

}  // extern "C"
