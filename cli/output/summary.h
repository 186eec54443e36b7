// The inputs of a run by type, for --summary.
#ifndef TYPESCOUT_CLI_OUTPUT_SUMMARY_H
#define TYPESCOUT_CLI_OUTPUT_SUMMARY_H

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "cli/ask/record.h"

namespace typescout::cli {

class Summary {
 public:
  void Add(const Record& record);

  // A table in lines of at most `width` columns, the most frequent type first.
  std::string AsText(std::size_t width) const;
  std::string AsJson() const;

 private:
  struct Row {
    std::string_view name;
    std::uint64_t count = 0;
    std::uint64_t bytes = 0;
    std::uint64_t mismatches = 0;
  };

  Row Sums() const;

  // By label: the filters' that describe best, or the states and kinds.
  std::map<std::string_view, Row> rows_;
  std::uint64_t unreadable_ = 0;
};

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_OUTPUT_SUMMARY_H
