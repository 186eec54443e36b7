#include "cli/options.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <numeric>
#include <thread>

#include "CLI/App.hpp"
#include "CLI/Config.hpp"
#include "CLI/Formatter.hpp"
#include "cli/ask/filters.h"
#include "cli/ask/record.h"
#include "cli/output/template.h"

namespace typescout::cli {
namespace {

using O = Options;
using Takes = OptionRow::Takes;
using enum OptionRow::Takes;

constexpr std::string_view INPUT = "Input";
constexpr std::string_view QUERY = "Query";
constexpr std::string_view OUTPUT = "Output";
constexpr std::string_view RUN = "Run";
constexpr std::string_view OTHER = "Other";
constexpr std::string_view HIDDEN;

// In a list of excluded options: all but those that follow.
constexpr std::string_view ALL_BUT = "*";

constexpr std::string_view WHEN = "auto always never";

// clang-format off
constexpr auto OPTIONS = std::to_array<OptionRow>({
    {'r', "recursive", "", NOTHING, &O::recursive, "", "", INPUT,
     "Walk folders, in the order of their names. A folder that is met twice is entered once."},
    {0, "exclude", "GLOB", ANYTHING, &O::excludes, "", "", INPUT,
     "Leave out, in a walk, what GLOB matches: the name, or the whole path when GLOB has a slash inside; only folders when it ends in one. Wildcards are * ? [a-z] [!a-z]. On Windows \\ is a slash too, and letter case does not count. May be repeated."},
    {'x', "one-file-system", "", NOTHING, &O::oneFileSystem, "", "", INPUT,
     "Do not walk into other file systems."},
    {'L', "dereference", "", NOTHING, &O::dereference, "", "", INPUT,
     "Follow symbolic links met in a walk. Without it only those named by PATH are followed."},
    {'f', "files-from", "FILE", FILE, &O::lists, "", "", INPUT,
     "Take paths from FILE, one a line; - is standard input. May be repeated."},
    {0, "null", "", NOTHING, &O::listsEndInNul, "", "", INPUT,
     "The paths in FILE end in a zero byte instead of a line end."},
    {0, "name", "NAME", ANYTHING, &O::contentName, "", "", INPUT,
     "The name of the content from standard input (PATH is -); its extension counts."},
    {0, "since", "OLD", FILE, &O::since, "", "", INPUT,
     "Copy the answers for files whose size and time of change are those in OLD, an earlier output of --jsonl in which the same filters were asked; with a --header, by the same version. Also resumes an interrupted run."},

    {'k', "all", "", NOTHING, &O::all, "", "", QUERY,
     "Report every filter that accepts the file, not only the first."},
    {'c', "candidates", "LIST", FILTERS, &O::candidates, "", "", QUERY,
     "Ask only these filters, in this order: identifiers (0x0305), labels (gif) and families (raster vector media native document text), separated by commas. May be repeated."},
    {0, "requested", "ID", FILTER, &O::requested, "", "", QUERY,
     "The filter that the caller means to use; the Illustrator and PDF filters look at it."},
    {0, "check", "ID", FILTER, &O::check, "", "since all candidates mismatch only compare summary id mime-type label format json jsonl csv", QUERY,
     "Print nothing; the exit status is 0 when the filter takes every input, 1 when it does not, 2 when one could not be read."},

    {'b', "brief", "", NOTHING, &O::brief, "", "", OUTPUT,
     "Leave out the path."},
    {0, "id", "", NOTHING, Shape::ID, "", "", OUTPUT,
     "Print the identifier only."},
    {'i', "mime-type", "", NOTHING, Shape::MIME_TYPE, "", "", OUTPUT,
     "Print the MIME type only, of the filter that describes the file best."},
    {'l', "label", "", NOTHING, Shape::LABEL, "", "", OUTPUT,
     "Print the filter's label only: one word, the same in every version."},
    {0, "format", "TEMPLATE", ANYTHING, &O::format, "", "id mime-type label json jsonl csv summary", OUTPUT,
     "Print TEMPLATE with its {fields} filled in (see FIELDS in the manual); {path!q} is quoted for a shell. {{ }} \\n \\t \\0 \\\\ as usual."},
    {0, "json", "", NOTHING, Shape::JSON, "", "print0", OUTPUT,
     "Print an array of JSON objects."},
    {0, "jsonl", "", NOTHING, Shape::JSON_LINES, "", "summary", OUTPUT,
     "Print a JSON object a line."},
    {0, "csv", "", NOTHING, Shape::CSV, "", "summary", OUTPUT,
     "Print comma-separated values with a heading."},
    {0, "csv-safe", "", NOTHING, &O::csvSafe, "", "", OUTPUT,
     "With --csv: put ' before values that a spreadsheet would take for formulas (= + - @)."},
    {0, "header", "", NOTHING, &O::header, "", "summary", OUTPUT,
     "With --json or --jsonl: begin with the version, the number of filters and what was asked."},
    {'0', "print0", "", NOTHING, &O::print0, "", "", OUTPUT,
     "End each record with a zero byte instead of a line end, and leave names as they are; with --only, print paths alone."},
    {0, "mismatch", "", NOTHING, &O::mismatch, "", "", OUTPUT,
     "Print only files whose extension does not belong to what they are, with the one that would."},
    {0, "only", "LIST", ANSWERS, &O::only, "", "", OUTPUT,
     "Print only inputs whose answer or best description is one of these filters (labels, identifiers, families) or states (unknown, empty, unreadable, fifo, ...)."},
    {0, "compare", "OLD", FILE, &O::compare, "", "summary", OUTPUT,
     "Print only what changed its answer, appeared or went since OLD, an earlier output of --jsonl; the exit status is 1 when something did."},
    {0, "summary", "", NOTHING, &O::summary, "", "id mime-type label print0", OUTPUT,
     "Print a table of the types found in place of the inputs; also as --json."},
    {0, "color", "[WHEN]", WORD, &O::color, WHEN, "", OUTPUT,
     "Colour on a terminal (auto), always (also without WHEN) or never. NO_COLOR in the environment turns auto off."},

    {0, "fail-on", "LIST", WORDS, &O::failOn, "unknown mismatch unreadable", "", RUN,
     "Exit with status 1 when any input is one of LIST: unknown, mismatch, unreadable, separated by commas. May be repeated."},
    {'j', "jobs", "N", NUMBER, &O::jobs, "", "", RUN,
     "Examine N files at a time (1 to 256); as many as there are cores when not given. The output is the same for every N."},
    {0, "progress", "[WHEN]", WORD, &O::progress, WHEN, "", RUN,
     "Show count, rate and time left on standard error: auto (on a terminal, while standard output is a file), always (also without WHEN) or never."},
    {'q', "quiet", "", NOTHING, &O::quiet, "", "", RUN,
     "No messages about single inputs; the exit status still tells."},

    {0, "list-filters", "", NOTHING, &O::listFilters, "", "* json jsonl csv man version help", OTHER,
     "Print the registry, in the order in which it is asked; also as --json, --jsonl, --csv."},
    {0, "modules", "", NOTHING, &O::listModules, "", "* man version help", OTHER,
     "Print where each module of the suite is looked for, and its version or why it is not used."},
    {0, "completion", "SHELL", WORD, &O::completion, "bash zsh fish", "* man version help", OTHER,
     "Print the completion script for SHELL: bash, zsh or fish."},
    {0, "man", "", NOTHING, &O::manual, "", "", HIDDEN,
     "Print the manual page."},
    {0, "version", "", NOTHING, &O::version, "", "", OTHER,
     "Print the version."},
    {'h', "help", "", NOTHING, &O::help, "", "", OTHER,
     "Print the options."},
});
// clang-format on

bool IsList(const OptionRow& row) {
  return row.takes == WORDS || row.takes == FILTERS || row.takes == ANSWERS;
}

std::string LongName(const OptionRow& row) { return "--" + std::string(row.longName); }

// The number of single-character changes, and of neighbours exchanged, that make one of the other
// (the distance of Damerau and Levenshtein).
std::size_t Distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> before(b.size() + 1);
  std::vector<std::size_t> last(b.size() + 1);
  std::iota(last.begin(), last.end(), 0);
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::vector<std::size_t> row(b.size() + 1, i);
    for (std::size_t j = 1; j <= b.size(); ++j) {
      row[j] = std::min({last[j - 1] + (a[i - 1] != b[j - 1]), row[j - 1] + 1, last[j] + 1});
      const bool isExchanged = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (isExchanged) row[j] = std::min(row[j], before[j - 2] + 1);
    }
    before = std::exchange(last, std::move(row));
  }
  return last.back();
}

// "; did you mean X?" for the only one of `known` that begins like the word, or else the nearest,
// if any is near.
std::string Suggest(std::string_view prefix, std::string word,
                    const std::vector<std::string_view>& known) {
  for (char& c : word) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  const auto suggestion = [prefix](std::string_view each) {
    return "; did you mean " + std::string(prefix) + std::string(each) + "?";
  };
  const auto isLonger = [&word](std::string_view each) { return each.starts_with(word); };
  const auto longer = std::find_if(known.begin(), known.end(), isLonger);
  if (word.size() > 1 && std::count_if(longer, known.end(), isLonger) == 1) {
    return suggestion(*longer);
  }
  const bool isNumber = !word.empty() && word[0] >= '0' && word[0] <= '9';
  // Where two are as near, the one with the same first letter.
  const auto order = [&word](std::string_view each) {
    return std::pair(Distance(word, each), each.substr(0, 1) != word.substr(0, 1));
  };
  const auto nearest = std::min_element(
      known.begin(), known.end(),
      [&order](std::string_view a, std::string_view b) { return order(a) < order(b); });
  if (isNumber || nearest == known.end() || Distance(word, *nearest) * 3 > word.size() + 1)
    return {};
  return suggestion(*nearest);
}

// 0 when the word is no decimal number. CLI11's own conversion takes 010 for octal.
unsigned ParseNumber(const std::string& word) {
  unsigned number = 0;
  const char* end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, number);
  return error == std::errc() && stop == end ? number : 0;
}

// What is wrong with one word of the option's value; empty when nothing is.
std::string CheckWord(const OptionRow& row, const std::string& word) {
  if (word.empty()) return "an empty value";
  const bool isFilterNamed =
      row.takes == FILTER ? FilterNamed(word) != 0 : !RowsNamed(word).empty();
  const std::vector<std::string_view> values = ValuesOf(row);
  switch (row.takes) {
    case WORD:
    case WORDS:
      if (CLI::IsMember(values)(word).empty()) return {};
      return "'" + word + "' is none of: " + std::string(row.words);
    case NUMBER:
      if (const unsigned number = ParseNumber(word); number >= 1 && number <= 256) return {};
      return "a number from 1 to 256 is needed, not '" + word + "'";
    case FILTER:
    case FILTERS:
    case ANSWERS:
      if (isFilterNamed || std::count(values.begin(), values.end(), word) != 0) return {};
      return "no filter '" + word + "'" + Suggest("", word, values) + " (see --list-filters)";
    default:
      return {};
  }
}

std::string CheckValue(const OptionRow& row, const std::string& value) {
  if (!IsList(row)) return CheckWord(row, value);
  for (const std::string_view word : Split(value, ',')) {
    if (std::string wrong = CheckWord(row, std::string(word)); !wrong.empty()) return wrong;
  }
  return {};
}

// CLI11 parses a positional argument in brackets as a list. A byte in front of such an argument
// prevents that; it is removed from the parsed values and from messages.
constexpr char SHIELD = '\1';

std::string Shield(const std::string& argument) {
  const bool needsIt = argument.starts_with('[') || argument.starts_with(SHIELD);
  return needsIt ? SHIELD + argument : argument;
}

CLI::Validator Unshield() {
  const auto unshield = [](std::string& argument) {
    if (argument.starts_with(SHIELD)) argument.erase(0, 1);
    return std::string();
  };
  return {unshield, "", ""};
}

CLI::Option* Define(const OptionRow& row, CLI::App* app, Options* options) {
  std::string names = LongName(row);
  if (row.shortName != 0) names += std::string(",-") + row.shortName;
  if (const Shape* shape = std::get_if<Shape>(&row.target)) {
    return app->add_flag_callback(names, [options, shape] { options->shape = *shape; })
        ->disable_flag_override();
  }
  if (const auto* flag = std::get_if<bool O::*>(&row.target)) {
    // A flag takes no value, so --all=false is an error.
    return app->add_flag(names, options->**flag)->disable_flag_override();
  }
  CLI::Option* option = nullptr;
  if (const auto* list = std::get_if<std::vector<std::string> O::*>(&row.target)) {
    option = app->add_option(names, options->**list)->allow_extra_args(false);
  } else if (const auto* text = std::get_if<std::string O::*>(&row.target)) {
    option = app->add_flag(names + "{always}", options->**text);
  } else if (const auto* number = std::get_if<unsigned O::*>(&row.target)) {
    option = app->add_option_function<std::string>(
        names,
        [options, number](const std::string& word) { options->** number = ParseNumber(word); });
  } else {
    option =
        app->add_option(names, options->*std::get<std::optional<std::string> O::*>(row.target));
  }
  const bool isList = std::holds_alternative<std::vector<std::string> O::*>(row.target);
  if (!isList) option->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
  return option->transform(Unshield())->check([&row](const std::string& value) {
    return CheckValue(row, value);
  });
}

void DefineExclusions(CLI::App* app) {
  for (const OptionRow& row : OPTIONS) {
    CLI::Option* option = app->get_option(LongName(row));
    const std::vector<std::string_view> words = Split(row.excludes, ' ');
    for (const OptionRow& other : OPTIONS) {
      const bool areShapes =
          std::holds_alternative<Shape>(row.target) && std::holds_alternative<Shape>(other.target);
      const bool isNamed = std::count(words.begin(), words.end(), other.longName) != 0;
      const bool excludes = areShapes || (words.front() == ALL_BUT ? !isNamed : isNamed);
      if (excludes && &row != &other) option->excludes(app->get_option(LongName(other)));
    }
  }
}

std::string ExplainExclusion(const CLI::App& app) {
  for (const CLI::Option* option : app.get_options()) {
    for (const CLI::Option* other : option->get_excludes()) {
      if (option->count() != 0 && other->count() != 0) {
        return option->get_name() + " and " + other->get_name() + " do not go together";
      }
    }
  }
  return {};
}

// The nearest option to `name`, which stands behind a dash or two.
std::string SuggestOption(std::string_view name) {
  std::vector<std::string_view> known;
  for (const OptionRow& row : OPTIONS) {
    if (!row.group.empty()) known.push_back(row.longName);
  }
  return Suggest("--", std::string(name), known);
}

std::string NoSuchOption(std::string_view word) {
  const std::string_view name = word.substr(0, word.find('='));
  const std::string nearest = name.starts_with("--") ? SuggestOption(name.substr(2)) : "";
  return std::string(name) + ": no such option" + nearest + " (see --help)";
}

// The row of the option --NAME, or null.
const OptionRow* FindOption(std::string_view name) {
  const auto found = std::find_if(OPTIONS.begin(), OPTIONS.end(),
                                  [name](const OptionRow& row) { return row.longName == name; });
  return found == OPTIONS.end() ? nullptr : &*found;
}

// CLI11 takes -help for -h -e -l -p. `left` is what it did not take. Empty when no argument looks
// like the name of an option with a dash too few.
std::string ExplainSingleDash(const std::vector<std::string>& arguments, std::string_view left) {
  constexpr std::size_t SHORTEST = 3;  // of names that are guessed
  for (const std::string_view argument : arguments) {
    if (argument == "--") break;
    if (!argument.starts_with('-') || argument.starts_with("--")) continue;
    const std::string_view name = argument.substr(1, argument.find('=') - 1);
    const bool isLeft =
        name.size() >= SHORTEST && left.size() > 1 && argument.ends_with(left.substr(1));
    const std::string nearest =
        isLeft || FindOption(name) != nullptr ? SuggestOption(name) : std::string();
    if (!nearest.empty())
      return "-" + std::string(name) + ": no such option" + nearest + " (see --help)";
  }
  return {};
}

// The message for an error that CLI11 found. CLI11's own message begins with the option's name.
std::string Explain(const CLI::App& app, const std::vector<std::string>& arguments,
                    const CLI::ParseError& error) {
  const std::vector<std::string> left = app.remaining();
  if (std::string wrong = ExplainSingleDash(arguments, left.empty() ? "" : left.front());
      !wrong.empty()) {
    return wrong;
  }
  if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) return NoSuchOption(left.front());
  if (dynamic_cast<const CLI::ExcludesError*>(&error) != nullptr) return ExplainExclusion(app);
  std::string text = error.what();
  if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) == nullptr) return text;
  text.erase(0, text.find_first_not_of('-'));
  text.resize(text.find_first_of(": "));
  const OptionRow* row = FindOption(text);
  const bool takesNothing = row != nullptr && row->takes == NOTHING;
  return "--" + text + (takesNothing ? ": takes no value" : ": a value is needed");
}

// CLI11 would take the next argument for the value.
std::string CheckEmptyValues(const std::vector<std::string>& arguments) {
  for (const std::string& argument : arguments) {
    if (argument == "--") break;
    const bool isEmpty = argument.starts_with("--") && argument.find('=') == argument.size() - 1;
    if (!isEmpty) continue;
    const std::string_view name = std::string_view(argument).substr(2, argument.size() - 3);
    if (FindOption(name) != nullptr) return "--" + std::string(name) + ": an empty value";
  }
  return {};
}

void SplitLists(Options* options) {
  for (const OptionRow& row : OPTIONS) {
    if (!IsList(row)) continue;
    std::vector<std::string>& list = options->*std::get<std::vector<std::string> O::*>(row.target);
    std::vector<std::string> words;
    for (const std::string& value : list) {
      for (const std::string_view word : Split(value, ',')) words.emplace_back(word);
    }
    list = std::move(words);
  }
}

std::string CheckTogether(const Options& options) {
  const bool isJson = options.shape == Shape::JSON || options.shape == Shape::JSON_LINES;
  if (options.header && !isJson) return "--header needs --json or --jsonl";
  if (options.csvSafe && options.shape != Shape::CSV) return "--csv-safe needs --csv";
  const auto content = std::count(options.paths.begin(), options.paths.end(), "-");
  const auto lists = std::count(options.lists.begin(), options.lists.end(), "-");
  if (content + lists > 1) return "standard input can be taken once only";
  if (options.contentName && content == 0) return "--name needs the path -";
  const bool hasNoInput = options.paths.empty() && options.lists.empty();
  const bool isList = options.listFilters || options.listModules || options.completion;
  if (isList && !hasNoInput) return options.paths.front() + ": a list takes no PATH";
  return hasNoInput && !isList ? "no PATH given (see --help)" : "";
}

}  // namespace

std::span<const OptionRow> OptionTable() { return OPTIONS; }

std::vector<std::string_view> ValuesOf(const OptionRow& row) {
  if (row.takes == WORD || row.takes == WORDS) return Split(row.words, ' ');
  std::vector<std::string_view> values;
  if (row.takes == FILTERS || row.takes == ANSWERS) {
    values.assign(std::begin(FAMILIES), std::end(FAMILIES));
  }
  if (row.takes == ANSWERS) {
    const std::vector<std::string_view> states = StateLabels();
    values.insert(values.end(), states.begin(), states.end());
  }
  if (row.takes == FILTER || row.takes == FILTERS || row.takes == ANSWERS) {
    for (const Filter& filter : catalogue::Filters()) {
      const bool isFirst = catalogue::FindFilter(filter.id) == &filter;
      if (isFirst && filter.evidence != catalogue::Evidence::NEVER) values.push_back(filter.label);
    }
  }
  return values;
}

std::vector<std::string_view> Split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  for (;;) {
    const std::size_t end = std::min(text.find(separator), text.size());
    parts.push_back(text.substr(0, end));
    if (end == text.size()) return parts;
    text.remove_prefix(end + 1);
  }
}

std::string ParseOptions(const std::vector<std::string>& arguments, Options* options) {
  if (std::string wrong = CheckEmptyValues(arguments); !wrong.empty()) return wrong;
  CLI::App app;
  app.set_help_flag();
  app.allow_windows_style_options(false);
  for (const OptionRow& row : OPTIONS) Define(row, &app, options);
  DefineExclusions(&app);
  app.add_option("PATH", options->paths)->transform(Unshield());
  std::vector<std::string> reversed;  // last to first, as CLI11 expects them
  std::transform(arguments.rbegin(), arguments.rend(), std::back_inserter(reversed), Shield);
  try {
    app.parse(std::move(reversed));
  } catch (const CLI::ParseError& error) {
    return Explain(app, arguments, error);
  }
  if (options->help || options->version || options->manual) return {};
  SplitLists(options);
  for (std::string& word : options->only) {
    if (const Filter* filter = catalogue::FindFilter(FilterNamed(word))) word = filter->label;
  }
  if (options->format) {
    options->shape = Shape::TEMPLATE;
    if (std::string wrong = CheckTemplate(*options->format); !wrong.empty()) {
      return "--format: " + wrong;
    }
  } else if (options->check) {
    options->shape = Shape::NOTHING;
  } else if (options->shape == Shape::TEXT && options->print0 && !options->only.empty()) {
    options->shape = Shape::NAMES;
  }
  if (options->jobs == 0) options->jobs = std::clamp(std::thread::hardware_concurrency(), 1u, 256u);
  return CheckTogether(*options);
}

}  // namespace typescout::cli
