// The six functions as the Windows module exports them (typescout.def): the same, except for how
// exceptions leave; and what is released when the module is unloaded.
//
// A program of another compiler's sees our exceptions as structured ones and drops the stack frames
// below its own. Our runtime would run the destructors of these frames and then not know where to
// go on. So all destructors run first, and then the exception is thrown again from a frame that has
// none. To a program of our own compiler's this makes no difference.
#include <exception>
#include <new>
#include <utility>

#include "host/library.h"
#include "typescout/typescout.h"

namespace __gnu_cxx {
void __freeres();
}

namespace {

// The C++ runtime, which is part of the module, keeps memory for exceptions in case that there is
// none (libstdc++, eh_alloc.cc). It leaves that to the end of the process.
[[gnu::destructor]] void ReleaseRuntimesMemory() { __gnu_cxx::__freeres(); }

// An exception that is thrown again. Its frames have nothing to destroy: the reference is released
// by the system's unwind handler, and std::rethrow_exception is called through a type without a
// parameter to destroy. (The ABI passes that parameter by its address.)
class Thrown {
 public:
  void Keep(std::exception_ptr exception) { new (bytes_) std::exception_ptr(std::move(exception)); }
  void Throw() {
    const auto rethrow = [](void* bytes) {
      void* const function = reinterpret_cast<void*>(&std::rethrow_exception);
      reinterpret_cast<void (*)(void*)>(function)(bytes);
    };
    const auto release = [](void* bytes, bool /*runsDestructors*/) {
      *static_cast<std::exception_ptr*>(bytes) = nullptr;
    };
    TvnUtils::CallGuarded(rethrow, release, bytes_);
  }

 private:
  alignas(std::exception_ptr) unsigned char bytes_[sizeof(std::exception_ptr)];
};

template <typename Function, typename... Arguments>
int Call(Function function, Arguments... arguments) {
  Thrown thrown;
  try {
    return function(arguments...);
  } catch (...) {
    thrown.Keep(std::current_exception());
  }
  thrown.Throw();
  return 0;
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
