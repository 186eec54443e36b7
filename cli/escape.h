// Escapes text for terminals, JSON and shells.
#ifndef TYPESCOUT_CLI_ESCAPE_H
#define TYPESCOUT_CLI_ESCAPE_H

#include <string>
#include <string_view>

namespace typescout::cli {

// The text with its control characters (C0, C1, line and paragraph separators, those that change
// the direction of writing) and what is not valid UTF-8 as \n, \t, \r or \x1B, so that a terminal
// shows them and does nothing else. Backslashes are doubled where anything else is escaped.
std::string EscapeControls(std::string_view text);

// A JSON string (RFC 8259) with its quotes. The same characters are escaped; what is not valid
// UTF-8 becomes U+FFFD.
void AppendJsonString(std::string_view text, std::string* json);

// A single argument of a POSIX shell's command.
std::string QuoteForShell(std::string_view text);

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_ESCAPE_H
