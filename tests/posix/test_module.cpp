// A loadable module for tests, with the functions of the suite's decoder and PDF module. The last
// character of the path says what to answer.
#include <cstdint>
#include <cstdlib>
#include <cwchar>
#include <exception>

#include "detectors/postscript/ai_native_data.h"

namespace {

wchar_t Last(const wchar_t* text) {
  const std::size_t length = std::wcslen(text);
  return length == 0 ? L'\0' : text[length - 1];
}

struct OwnError final : std::exception {
  const char* what() const noexcept override { return "an error of the module's own class"; }
};

// Calls what a test wants to happen while the loader is at work. Its address is in the environment.
[[gnu::constructor]] void Initialise() {
  const char* address = std::getenv("TEST_MODULE_CALLS");
  if (address != nullptr) reinterpret_cast<void (*)()>(std::strtoull(address, nullptr, 10))();
}

}  // namespace

#define EXPORTED extern "C" __attribute__((visibility("default")))

// '+' is a raw file, '?' an error.
EXPORTED int CheckForRaw(const wchar_t* path) {
  if (Last(path) == L'?') throw OwnError();
  return Last(path) == L'+' ? 1 : 0;
}

// '2' and '8' set the answer's flags, '?' is an error.
EXPORTED int GetAINativeData(typescout::AINativeDataQuery* query, void* /*unused*/,
                             std::uint32_t* flags) {
  const wchar_t last = Last(query->path);
  if (last == L'?') throw OwnError();
  *flags = last == L'2' ? 0x02 : last == L'8' ? 0x80 : 0;
  return 1;
}
