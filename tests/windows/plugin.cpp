// A module of the suite, as far as the loader is concerned; the tests copy it about.
extern "C" __declspec(dllexport) int Answer() { return 42; }
