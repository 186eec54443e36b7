// What the program knows about the filters: labels, names, MIME types, extensions. One row for each
// row of the library's registry, in its order; a test holds it against the library's own answers.
#ifndef TYPESCOUT_CLI_FILTER_TABLE_H
#define TYPESCOUT_CLI_FILTER_TABLE_H

#include <array>
#include <span>
#include <string>
#include <string_view>

namespace typescout::cli {

struct Filter {
  int id;
  // What scripts match on: lower case, no spaces. Once published, a label never changes. Two rows
  // have the same one exactly when they have the same identifier.
  std::string_view label;
  std::string_view name;
  std::string_view mime;  // as registered with IANA; empty where none is
  std::string_view
      extensions;  // lower case, separated by spaces, the usual one first; may be empty
  // The earlier rows, separated by spaces, of which one always wins a full scan of what this row
  // accepts ("never" for a row that accepts nothing). A file of three bytes or less may differ.
  std::string_view hiddenBy;
};

inline constexpr int FILTER_COUNT = 108;

// The place in this table is the registry index.
extern const std::array<Filter, FILTER_COUNT> FILTERS;

// The filter with this identifier, the first row when several have it; null when there is none.
// Also finds the drawing object in a compound document, which the library reports but has no row
// for.
const Filter* FindFilter(int id);

// The same by label.
const Filter* FindFilter(std::string_view label);

// The row of the filter, or -1 for the drawing object.
int RowOf(const Filter& filter);

bool IsNeverReported(const Filter& filter);

// "raster", "vector", "media", "native", "document" or "text".
std::string_view Family(int id);

// As everywhere in the program: 0x0305.
std::string FormatId(int id);

// Whether `extension` (lower case, without the dot) is one of the filter's.
bool HasExtension(const Filter& filter, std::string_view extension);

// The usual extension; empty when none is known.
std::string_view UsualExtension(const Filter& filter);

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_FILTER_TABLE_H
