// The command line: one table of options, from which the parser, --help, the manual page and the
// completions are made.
#ifndef TYPESCOUT_CLI_OPTIONS_H
#define TYPESCOUT_CLI_OPTIONS_H

#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace typescout::cli {

struct Options {
  // What to look at.
  std::vector<std::string> paths;
  bool recursive = false;
  std::vector<std::string> excludes;
  bool oneFileSystem = false;
  bool dereference = false;
  std::vector<std::string> lists;  // files with paths
  bool listsEndInNul = false;
  std::string contentName;

  // What to ask.
  bool all = false;
  std::string candidateText;
  std::string requestedText;
  std::string checkText;

  // What to print.
  bool brief = false;
  bool id = false;
  bool mime = false;
  bool label = false;
  std::string format;
  bool json = false;
  bool jsonLines = false;
  bool csv = false;
  bool print0 = false;
  bool mismatch = false;
  std::string color = "auto";

  // How it goes.
  std::string failOnText;
  std::string jobsText;
  std::string progress = "auto";
  bool quiet = false;
  bool summary = false;

  // What else.
  bool listFilters = false;
  std::string completion;
  bool manual = false;
  bool version = false;
  bool help = false;

  // Made of the texts above. Candidates are registry rows; an empty list is all of them.
  std::vector<int> candidates;
  int requested = 0;
  int check = 0;  // 0: not asked
  unsigned jobs = 1;
  bool failOnUnknown = false;
  bool failOnMismatch = false;
  bool failOnUnreadable = false;
};

struct OptionRow {
  char shortName;  // 0: none
  std::string_view longName;
  std::string_view argument;  // empty: none; in brackets: may be left out, then with '='
  std::variant<bool Options::*, std::string Options::*, std::vector<std::string> Options::*> target;
  std::string_view choices;  // what the argument can be, separated by spaces; empty: anything
  std::string_view group;    // the heading that it stands under; empty: not shown
  std::string_view help;
};

// In the order in which they are shown; rows of a group stand together.
std::span<const OptionRow> OptionTable();

struct ExitStatus {
  static constexpr int DONE = 0;
  static constexpr int FOUND = 1;
  static constexpr int UNREADABLE = 2;
  static constexpr int USAGE = 64;
  static constexpr int FAILED = 70;  // no memory, no threads
  static constexpr int OUTPUT_FAILED = 74;
};

// Empty when the arguments (without the program's name) make sense; `*options` is filled then.
// Otherwise what is wrong, in one line.
std::string ParseOptions(const std::vector<std::string>& arguments, Options* options);

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_OPTIONS_H
