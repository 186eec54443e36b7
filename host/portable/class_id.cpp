// Class identifiers in text. Windows has a function of its own.
#include <string_view>

#include "host/structured_storage.h"

namespace {

// The value of a hexadecimal digit, or -1.
int HexDigit(wchar_t c) {
  if (c >= L'0' && c <= L'9') return c - L'0';
  if (c >= L'a' && c <= L'f') return c - L'a' + 10;
  if (c >= L'A' && c <= L'F') return c - L'A' + 10;
  return -1;
}

}  // namespace

extern "C" HRESULT CLSIDFromString(const wchar_t* text, CLSID* classId) {
  constexpr std::wstring_view FORM = L"{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}";
  *classId = {};
  if (text == nullptr || std::wstring_view(text).size() != FORM.size()) return CO_E_CLASSSTRING;
  std::uint8_t digits[32] = {};
  std::size_t count = 0;
  for (std::size_t i = 0; i < FORM.size(); ++i) {
    if (FORM[i] != L'x') {
      if (text[i] != FORM[i]) return CO_E_CLASSSTRING;
      continue;
    }
    const int digit = HexDigit(text[i]);
    if (digit < 0) return CO_E_CLASSSTRING;
    digits[count++] = static_cast<std::uint8_t>(digit);
  }
  const auto number = [&digits](std::size_t first, std::size_t length) {
    std::uint32_t value = 0;
    for (std::size_t i = first; i < first + length; ++i) value = value << 4 | digits[i];
    return value;
  };
  classId->data1 = number(0, 8);
  classId->data2 = static_cast<std::uint16_t>(number(8, 4));
  classId->data3 = static_cast<std::uint16_t>(number(12, 4));
  for (std::size_t i = 0; i < 8; ++i) {
    classId->data4[i] = static_cast<std::uint8_t>(number(16 + 2 * i, 2));
  }
  return S_OK;
}
