// What every structured output says about a record, field by field.
#ifndef TYPESCOUT_CLI_OUTPUT_FIELDS_H
#define TYPESCOUT_CLI_OUTPUT_FIELDS_H

#include <span>
#include <string>
#include <string_view>

#include "cli/ask/record.h"

namespace typescout::cli {

struct Field {
  std::string_view name;
  std::string (*value)(const Record& record);
};

// Every field, in the order of the CSV columns. A field that does not apply is empty.
std::span<const Field> Fields();

// Null when there is no such field.
const Field* FindField(std::string_view name);

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_OUTPUT_FIELDS_H
