// File names are bytes. What they are turned into for the library and for the reader.
#ifndef TYPESCOUT_CLI_OUTPUT_NAMES_H
#define TYPESCOUT_CLI_OUTPUT_NAMES_H

#include <string>
#include <string_view>

namespace typescout::cli {

// The wide string that the library takes for a path of these bytes (typescout.h): a byte that is
// not part of valid UTF-8 stands as U+DC00 + byte. On Windows, UTF-16.
std::wstring ToWide(std::string_view bytes);

bool IsValidUtf8(std::string_view bytes);

// The bytes with control characters, backslashes and what is not valid UTF-8 written as \n, \t,
// \\ or \x1B, so that a terminal shows them and does nothing else.
std::string EscapeForTerminal(std::string_view bytes);

// RFC 4648, section 4.
std::string Base64(std::string_view bytes);

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_OUTPUT_NAMES_H
