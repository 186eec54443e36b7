// The templates of --format.
#ifndef TYPESCOUT_CLI_OUTPUT_TEMPLATE_H
#define TYPESCOUT_CLI_OUTPUT_TEMPLATE_H

#include <string>
#include <string_view>

#include "cli/ask/record.h"

namespace typescout::cli {

// What is wrong with it, or empty. {field} must be one that there is, {field!q} is quoted for a
// shell, { and } alone are written {{ and }}.
std::string CheckTemplate(std::string_view text);

// The template, which was found right, with the record's fields filled in, escaped when a terminal
// is going to show them.
std::string FillTemplate(std::string_view text, const Record& record, bool forTerminal);

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_OUTPUT_TEMPLATE_H
