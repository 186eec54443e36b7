// Modules of the suite that are loaded at run time.
#ifndef TYPESCOUT_HOST_LIBRARY_H
#define TYPESCOUT_HOST_LIBRARY_H

#include "host/strings.h"

namespace TvnUtils {

// A loadable module. A bare name is looked for beside the typescout module itself (on Windows in
// the system folder too), a path where it says; either without an extension gets the platform's.
// The current folder and the loader's search path are never looked at.
class TvnLibrary {
 public:
  // Loads nothing yet.
  explicit TvnLibrary(const TvnPlatform::TvnStringT<wchar_t>& name);
  TvnLibrary(const TvnLibrary&) = delete;
  TvnLibrary& operator=(const TvnLibrary&) = delete;
  // Gives the module back when it is still loaded.
  ~TvnLibrary();

  // Whether the module is loaded now. A missing module is false, never an exception; what the
  // module's own start-up throws passes through.
  bool Load();
  bool IsLoaded() const;
  // The address of an exported function, or null when the module lacks it or is not loaded.
  void* GetSymbol(const char* name) const;
  // Whether a module was given back; harmless when none is loaded.
  bool Unload();

 private:
  struct Module;
  Module* module_;  // null when memory ran out: such a library never loads
};

}  // namespace TvnUtils

#endif  // TYPESCOUT_HOST_LIBRARY_H
