// A loadable module for tests, with the functions of the suite's decoder and PDF module. The path's
// last character says what to answer, so that a test needs no other road into the module.
#include <cwchar>
#include <stdexcept>

namespace {

wchar_t Last(const wchar_t* text) {
  const std::size_t length = std::wcslen(text);
  return length == 0 ? L'\0' : text[length - 1];
}

struct Query {
  const wchar_t* path;
};

}  // namespace

#define EXPORTED extern "C" __attribute__((visibility("default")))

// '+' is a raw file, '!' an error.
EXPORTED int CheckForRaw(const wchar_t* path) {
  if (Last(path) == L'!') throw std::runtime_error("the decoder's own");
  return Last(path) == L'+' ? 1 : 0;
}

// A digit or letter from '@' on: the answer's flags, less '@'. '!' is an error.
EXPORTED int GetAINativeData(Query* query, int /*unused*/, int* flags) {
  const wchar_t last = Last(query->path);
  if (last == L'!') throw std::runtime_error("the module's own");
  *flags = last == L'2' ? 0x02 : last == L'8' ? 0x80 : 0;
  return 1;
}
