// Replaces the library, to be loaded before it: files whose names say what happens. With
// NO_THREADS set no thread can be started. Also lies where an import module does, to be counted:
// writes a line to COUNT_FILE each time it is loaded.
#include <dlfcn.h>
#include <pthread.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string_view>
#include <thread>

#include "typescout/typescout.h"

[[gnu::constructor]] static void Count() {
  const char* path = std::getenv("COUNT_FILE");
  if (path != nullptr) std::ofstream(path, std::ios::app) << "loaded\n";
}

int TypeScoutFile(const wchar_t* path) {
  using std::chrono::milliseconds;
  const std::wstring_view name(path);
  if (name == L"cut.gif") throw 0;
  if (name == L"failing.pdf") throw std::runtime_error("out of ink");
  if (name == L"odd.pdf") throw "nothing that one could print";
  if (name == L"slow.gif") std::this_thread::sleep_for(milliseconds(250));
  if (name == L"slowest.gif") std::this_thread::sleep_for(milliseconds(60'000));
  return 0x0305;
}

// With ROWS set, a library of another version.
int GetNumTypeScoutProcs() {
  if (const char* rows = std::getenv("ROWS"); rows != nullptr) return std::atoi(rows);
  return reinterpret_cast<int (*)()>(dlsym(RTLD_NEXT, "_Z20GetNumTypeScoutProcsv"))();
}

extern "C" __attribute__((visibility("default"))) int pthread_create(
    pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*), void* argument) {
  if (std::getenv("NO_THREADS") != nullptr) return EAGAIN;
  const auto create =
      reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"));
  return create(thread, attributes, start, argument);
}
