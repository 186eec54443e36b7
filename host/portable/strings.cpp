#include "host/strings.h"

namespace TvnUtl {

wchar_t* StringCopy(wchar_t* destination, std::size_t capacity, const wchar_t* source) {
  std::size_t length = 0;
  while (length < capacity && source[length] != L'\0') ++length;
  if (length == capacity) length = 0;
  std::wstring_view(source, length).copy(destination, length);
  destination[length] = L'\0';
  return destination;
}

}  // namespace TvnUtl
