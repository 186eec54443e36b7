// Modules of the suite that are loaded at run time.
#ifndef TYPESCOUT_HOST_LIBRARY_H
#define TYPESCOUT_HOST_LIBRARY_H

#include "host/strings.h"

namespace TvnUtils {

// A loadable module. A bare name is looked for beside the typescout module (on Windows in the
// system folder too), an absolute path at its place. A name without an extension gets the
// platform's. The current folder and the loader's search path are not searched.
// host/posix/trusted_module.h and host/windows/library.cpp say which modules are refused. On POSIX
// a module that the process has already loaded by the same path is used without a check.
class TvnLibrary {
 public:
  // Loads nothing yet.
  explicit TvnLibrary(const TvnPlatform::TvnStringT<wchar_t>& name);
  TvnLibrary(const TvnLibrary&) = delete;
  TvnLibrary& operator=(const TvnLibrary&) = delete;
  // A module that is still loaded stays in memory until the process ends: an exception is leaving
  // its user, and the exception's type and destructor may be the module's. In every other case
  // call Unload().
  ~TvnLibrary();

  // Whether the module is loaded now. False when it is missing, refused or damaged, or when memory
  // runs out. What the module's own initialisation throws
  // ends the process where the loader lets nothing through, as glibc's does.
  bool Load();
  bool IsLoaded() const;
  // The address of an exported function, or null when the module lacks it or is not loaded.
  void* GetSymbol(const char* name) const;
  // Releases the module, after which nothing of it may be used. False when none was loaded.
  bool Unload();

 private:
  void* loaded_ = nullptr;
  TvnPlatform::TvnStringT<wchar_t> name_;  // empty, which never loads, when memory ran out
};

// Calls `call(data)`, and `left(data, ...)` when an exception leaves it, before the exception goes
// on.
//
// On Windows, exceptions pass here that run no destructors: structured exceptions, and those of
// another compiler's runtime. For them `runsDestructors` is false. The stack frames of all callers
// up to the one that catches are dropped then, so `left` must release what belongs to them. It must
// not throw. On other systems it is never called: all exceptions run destructors there.
void CallGuarded(void (*call)(void* data), void (*left)(void* data, bool runsDestructors),
                 void* data);

}  // namespace TvnUtils

#endif  // TYPESCOUT_HOST_LIBRARY_H
