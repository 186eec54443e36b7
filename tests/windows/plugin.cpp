// A module of the suite, as far as the loader is concerned; the tests copy it about.
#include <stdexcept>

extern "C" __declspec(dllexport) int Answer() { return 42; }

extern "C" __declspec(dllexport) int GetAINativeData(void* /*query*/, void* /*reserved*/,
                                                     unsigned* /*flags*/) {
  throw std::runtime_error("the module's own");
}
