// The help text, the manual page and the completions, made from the table of options.
#ifndef TYPESCOUT_CLI_HELP_H
#define TYPESCOUT_CLI_HELP_H

#include <string>
#include <string_view>

namespace typescout::cli {

std::string HelpText();

// docs/typescout.1, in the man macros.
std::string ManualPage(std::string_view version);

// The completion script for "bash", "zsh" or "fish".
std::string CompletionScript(std::string_view shell);

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_HELP_H
