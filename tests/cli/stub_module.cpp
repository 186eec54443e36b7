// Stands in for the library, to be loaded before it: files whose names say what happens.
#include <chrono>
#include <stdexcept>
#include <string_view>
#include <thread>

#include "typescout/typescout.h"

int TypeScoutFile(const wchar_t* path) {
  const std::wstring_view name(path);
  if (name == L"cut.gif") throw 0;
  if (name == L"failing.pdf") throw std::runtime_error("out of ink");
  if (name == L"odd.pdf") throw "nothing that one could print";
  if (name == L"slow.gif") std::this_thread::sleep_for(std::chrono::milliseconds(250));
  return 0x0305;
}
