// The fields of a record in every output: one table for JSON, CSV, --format and the
// manual page, and one for the registry.
#ifndef TYPESCOUT_CLI_OUTPUT_FIELDS_H
#define TYPESCOUT_CLI_OUTPUT_FIELDS_H

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "cli/ask/record.h"

namespace typescout::cli {

// What does not apply is std::monostate: left out of JSON, empty elsewhere.
using Value = std::variant<std::monostate, bool, std::uint64_t, std::string_view, std::string,
                           std::vector<const Filter*>, std::vector<std::string>>;

template <typename Subject>
struct Field {
  enum class Use {
    ALWAYS,
    JSON_AND_CSV,
    TEMPLATE,    // --format alone
    COMPARE,     // with --compare
    RESTRICTED,  // with --candidates or --requested
  };

  std::string_view name;
  Use use;
  Value (*value)(const Subject& subject);
  std::string_view help;
};

// In the order of the CSV columns.
std::span<const Field<Record>> RecordFields();
std::span<const Field<Filter>> FilterFields();

// The field that --format calls so; null when there is none.
const Field<Record>* FindTemplateField(std::string_view name);

// As in CSV and --format: lists with spaces between their members.
std::string ToText(const Value& value);

// An object in one line, without a line end.
template <typename Subject>
std::string JsonObject(std::span<const Field<Subject>> fields, const Subject& subject);

// Values separated by commas (RFC 4180), without a line end. Control characters are escaped, and
// "path_bytes" has the path's true bytes where that changed it. `isSafe`: values that a spreadsheet
// would take for formulas are put behind an apostrophe.
template <typename Subject>
std::string CsvLine(std::span<const Field<Subject>> fields, const Subject& subject, bool isSafe);
template <typename Subject>
std::string CsvHeading(std::span<const Field<Subject>> fields);

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_OUTPUT_FIELDS_H
