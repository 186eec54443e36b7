// How records become output. A writer keeps nothing between records: it is used from several
// threads at once.
#ifndef TYPESCOUT_CLI_OUTPUT_WRITERS_H
#define TYPESCOUT_CLI_OUTPUT_WRITERS_H

#include <memory>
#include <string>

#include "cli/ask/record.h"
#include "cli/options.h"

namespace typescout::cli {

class Writer {
 public:
  virtual ~Writer() = default;

  // The text before the first record, between two records and after the last; and the text that
  // replaces all of them when there are no records.
  virtual std::string Begin() const { return {}; }
  virtual std::string Between() const { return {}; }
  virtual std::string End() const { return {}; }
  virtual std::string Nothing() const { return Begin() + End(); }

  // The record with its end; empty when it is not for this output.
  virtual std::string Format(const Record& record) const = 0;

  // Whether records need `size` and `modified`.
  virtual bool NeedsStatus() const { return true; }
};

// `isTerminal`: control characters are escaped even in what is for scripts. `isColored`: text for
// people may be coloured.
std::unique_ptr<Writer> MakeWriter(const Options& options, bool isTerminal, bool isColored);

// What an output was made with, as --header has it: an object in one line.
std::string HeaderObject(const Options& options);

// The registry, for --list-filters.
std::string FilterList(Shape shape);

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_OUTPUT_WRITERS_H
