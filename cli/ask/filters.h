// How the command line names filters.
#ifndef TYPESCOUT_CLI_ASK_FILTERS_H
#define TYPESCOUT_CLI_ASK_FILTERS_H

#include <string_view>
#include <vector>

#include "catalogue/filters.h"

namespace typescout::cli {

using catalogue::Filter;

constexpr std::string_view FAMILIES[] = {"raster", "vector", "media", "native", "document", "text"};

// The identifier that a label, 0x0305 or 773 names; 0 when it is none of the suite's filters.
int FilterNamed(std::string_view word);

// The registry rows that a family or a filter stands for, in the registry's order. An identifier
// without a row gives row 0, which accepts nothing. Empty when it names no filter.
std::vector<int> RowsNamed(std::string_view word);

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_ASK_FILTERS_H
