// What --modules prints.
#ifndef TYPESCOUT_CLI_ASK_MODULES_H
#define TYPESCOUT_CLI_ASK_MODULES_H

#include <string>

namespace typescout::cli {

// A line for each module: where the library looks for it, and its version or why it is not used.
std::string ModuleList();

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_ASK_MODULES_H
