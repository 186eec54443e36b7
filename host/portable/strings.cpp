#include "host/strings.h"

#include <wchar.h>

namespace TvnUtl {

wchar_t* StringCopy(wchar_t* destination, std::size_t capacity, const wchar_t* source) {
  std::size_t length = wcsnlen(source, capacity);
  if (length == capacity) length = 0;
  std::wstring_view(source, length).copy(destination, length);
  destination[length] = L'\0';
  return destination;
}

}  // namespace TvnUtl
