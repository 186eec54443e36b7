// Stands in for the library, to be loaded before it: files whose names say what happens. Also lies
// where an import module does, to be counted: writes a line to COUNT_FILE each time it is loaded.
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
  const std::wstring_view name(path);
  if (name == L"cut.gif") throw 0;
  if (name == L"failing.pdf") throw std::runtime_error("out of ink");
  if (name == L"odd.pdf") throw "nothing that one could print";
  if (name == L"slow.gif") std::this_thread::sleep_for(std::chrono::milliseconds(250));
  return 0x0305;
}
