// The command line: one table of options, from which the parser, --help, the manual page and the
// completions are made.
#ifndef TYPESCOUT_CLI_OPTIONS_H
#define TYPESCOUT_CLI_OPTIONS_H

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace typescout::cli {

// What is printed about each input.
enum class Shape { TEXT, ID, MIME_TYPE, LABEL, TEMPLATE, JSON, JSON_LINES, CSV, NAMES, NOTHING };

struct Options {
  // Input.
  std::vector<std::string> paths;
  bool recursive = false;
  std::vector<std::string> excludes;
  bool oneFileSystem = false;
  bool dereference = false;
  std::vector<std::string> lists;  // files with paths
  bool listsEndInNul = false;
  std::optional<std::string> contentName;
  std::optional<std::string> since;

  // Query. These hold words that name filters (ask/filters.h).
  bool all = false;
  std::vector<std::string> candidates;  // empty: every filter
  std::optional<std::string> requested;
  std::optional<std::string> check;

  // Output.
  Shape shape = Shape::TEXT;
  bool brief = false;
  std::optional<std::string> format;
  bool csvSafe = false;
  bool header = false;
  bool print0 = false;
  bool mismatch = false;
  std::vector<std::string> only;  // labels, families, states; empty: every input
  std::optional<std::string> compare;
  bool summary = false;
  std::string color = "auto";

  // Run.
  std::vector<std::string> failOn;
  unsigned jobs = 0;  // at least 1 once parsed
  std::string progress = "auto";
  bool quiet = false;

  // Other.
  bool listFilters = false;
  bool listModules = false;
  std::optional<std::string> completion;
  bool manual = false;
  bool version = false;
  bool help = false;
};

struct OptionRow {
  // What an option's value can be.
  enum class Takes {
    NOTHING,
    ANYTHING,
    FILE,
    NUMBER,   // 1 to 256
    WORD,     // one of `words`
    WORDS,    // some of `words`, separated by commas
    FILTER,   // an identifier or a label
    FILTERS,  // these and families, separated by commas
    ANSWERS,  // labels and states, separated by commas
  };

  char shortName;  // 0: none
  std::string_view longName;
  std::string_view argument;  // as it is shown; in brackets: may be left out, then with '='
  Takes takes;
  std::variant<bool Options::*, std::string Options::*, std::optional<std::string> Options::*,
               std::vector<std::string> Options::*, unsigned Options::*, Shape>
      target;
  std::string_view words;     // separated by spaces
  std::string_view excludes;  // options that it does not go with, or "*" and those that it goes
                              // with; shapes exclude each other
  std::string_view group;     // the heading that it stands under; empty: not shown
  std::string_view help;
};

// In the order in which they are shown; rows of a group stand together.
std::span<const OptionRow> OptionTable();

// What the option's value can be; empty when that cannot be listed. Identifiers, which FILTER and
// FILTERS take too, are not among them.
std::vector<std::string_view> ValuesOf(const OptionRow& row);

struct ExitStatus {
  static constexpr int DONE = 0;
  static constexpr int FOUND = 1;
  static constexpr int UNREADABLE = 2;
  static constexpr int USAGE = 64;
  static constexpr int FAILED = 70;  // no memory, or a library of another version
  static constexpr int OUTPUT_FAILED = 74;
};

// Empty when the arguments (without the program's name) are valid; `*options` is filled then.
// Otherwise what is wrong, in one line.
std::string ParseOptions(const std::vector<std::string>& arguments, Options* options);

// The parts of `text` between separators; an empty text is one empty part.
std::vector<std::string_view> Split(std::string_view text, char separator);

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_OPTIONS_H
