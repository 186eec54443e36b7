// UTF-8 (RFC 3629), in which the program keeps text. Names of files are bytes that need not be
// valid.
#ifndef TYPESCOUT_CLI_UTF8_H
#define TYPESCOUT_CLI_UTF8_H

#include <string>
#include <string_view>

#include "host/portable/utf8.h"

namespace typescout::cli {

bool IsValidUtf8(std::string_view bytes);

// Also encodes halves of surrogate pairs, which names on Windows may hold alone.
void AppendUtf8(char32_t value, std::string* bytes);

// The wide string that the library takes for a path of these bytes (typescout.h): a byte that is
// not part of valid UTF-8 stands as U+DC00 + byte. On Windows UTF-16, with encoded halves of
// surrogate pairs decoded.
std::wstring ToWide(std::string_view bytes);

// UTF-16 or UTF-32, as wchar_t is, in UTF-8.
std::string FromWide(std::wstring_view wide);

// RFC 4648, section 4.
std::string Base64(std::string_view bytes);
// The bytes; what is not base64 ends them.
std::string FromBase64(std::string_view text);

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_UTF8_H
