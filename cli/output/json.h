// Records and the registry as JSON (RFC 8259), in UTF-8 whatever a name holds.
#ifndef TYPESCOUT_CLI_OUTPUT_JSON_H
#define TYPESCOUT_CLI_OUTPUT_JSON_H

#include <string>

#include "cli/ask/record.h"

namespace typescout::cli {

// One object in one line, without a line end. A path that is not valid UTF-8 has U+FFFD in the
// place of its stray bytes, and its true bytes in base64 beside it, as "path_bytes".
std::string JsonObject(const Record& record);

// An array of the registry's rows, in their order.
std::string JsonFilterList();

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_OUTPUT_JSON_H
