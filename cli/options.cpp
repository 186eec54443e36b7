#include "cli/options.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <thread>

#include "CLI/App.hpp"
#include "CLI/Config.hpp"
#include "CLI/Formatter.hpp"
#include "catalogue/filters.h"
#include "cli/output/template.h"
#include "typescout/typescout.h"

namespace typescout::cli {
namespace {

using O = Options;

constexpr std::string_view INPUT = "What to look at";
constexpr std::string_view QUESTION = "What to ask";
constexpr std::string_view OUTPUT = "What to print";
constexpr std::string_view RUN = "How it goes";
constexpr std::string_view ELSE = "What else there is";
constexpr std::string_view HIDDEN;

constexpr std::string_view WHEN = "auto always never";

// clang-format off
constexpr auto OPTIONS = std::to_array<OptionRow>({
    {'r', "recursive", "", &O::recursive, "", INPUT,
     "Walk folders, in the order of their names. A folder that is met twice is entered once."},
    {0, "exclude", "GLOB", &O::excludes, "", INPUT,
     "Leave out, in a walk, what GLOB matches: the name, or the whole path when GLOB has a slash. May be repeated."},
    {'x', "one-file-system", "", &O::oneFileSystem, "", INPUT,
     "Do not walk into other file systems."},
    {'L', "dereference", "", &O::dereference, "", INPUT,
     "Follow symbolic links met in a walk. Without it only those named by PATH are followed."},
    {'f', "files-from", "FILE", &O::lists, "", INPUT,
     "Take paths from FILE, one a line; - is standard input. May be repeated."},
    {0, "null", "", &O::listsEndInNul, "", INPUT,
     "The paths in FILE end in a zero byte instead of a line end."},
    {0, "name", "NAME", &O::contentName, "", INPUT,
     "The name in the record of content from standard input (PATH is -)."},

    {'k', "all", "", &O::all, "", QUESTION,
     "Tell every filter that says yes, not only the first."},
    {'c', "candidates", "LIST", &O::candidateText, "", QUESTION,
     "Ask only these filters, in this order: identifiers (0x0305), labels (gif) and families (raster vector media native document text), separated by commas."},
    {0, "requested", "ID", &O::requestedText, "", QUESTION,
     "The filter that the caller means to use; the Illustrator and PDF filters look at it."},
    {0, "check", "ID", &O::checkText, "", QUESTION,
     "Print nothing; the exit status is 0 when the filter takes every input, else 1."},

    {'b', "brief", "", &O::brief, "", OUTPUT,
     "Leave out the path."},
    {0, "id", "", &O::id, "", OUTPUT,
     "Print the identifier only."},
    {'i', "mime-type", "", &O::mime, "", OUTPUT,
     "Print the MIME type only: of the filter that the file's name says, where it and an earlier one say yes."},
    {'l', "label", "", &O::label, "", OUTPUT,
     "Print the label only: one word, which never changes."},
    {0, "format", "TEMPLATE", &O::format, "", OUTPUT,
     "Print TEMPLATE, in which {path} {id} {label} {name} {family} {mime} {status} {kind} {also} {all} {extension} {expected} {reason} are filled in; {{ }} \\n \\t \\\\ as usual."},
    {0, "json", "", &O::json, "", OUTPUT,
     "Print an array of JSON objects."},
    {0, "jsonl", "", &O::jsonLines, "", OUTPUT,
     "Print a JSON object a line."},
    {0, "csv", "", &O::csv, "", OUTPUT,
     "Print comma-separated values with a heading."},
    {'0', "print0", "", &O::print0, "", OUTPUT,
     "End each record with a zero byte instead of a line end."},
    {0, "mismatch", "", &O::mismatch, "", OUTPUT,
     "Print only files whose extension does not belong to what they are, with the one that would."},
    {0, "color", "[WHEN]", &O::color, WHEN, OUTPUT,
     "Colour on a terminal (auto), always or never. NO_COLOR in the environment turns auto off."},

    {0, "fail-on", "LIST", &O::failOnText, "unknown mismatch unreadable", RUN,
     "Exit with status 1 when any input is one of LIST: unknown, mismatch, unreadable, separated by commas."},
    {'j', "jobs", "N", &O::jobsText, "", RUN,
     "Examine N files at a time; as many as there are cores when not given. The output is the same for every N."},
    {0, "progress", "[WHEN]", &O::progress, WHEN, RUN,
     "Show count, rate and time left on standard error: when that alone is a terminal (auto), always or never."},
    {'q', "quiet", "", &O::quiet, "", RUN,
     "No messages about single inputs; the exit status still tells."},
    {0, "summary", "", &O::summary, "", RUN,
     "Close with the sums on standard error."},

    {0, "list-filters", "", &O::listFilters, "", ELSE,
     "Print the registry, in the order in which it is asked; also as --json."},
    {0, "completion", "SHELL", &O::completion, "bash zsh fish", ELSE,
     "Print the completion script for SHELL."},
    {0, "man", "", &O::manual, "", HIDDEN,
     "Print the manual page."},
    {0, "version", "", &O::version, "", ELSE,
     "Print the version."},
    {'h', "help", "", &O::help, "", ELSE,
     "Print this."},
});
// clang-format on

// CLI11 takes a positional argument in brackets for a list in its own notation. Names like "[a,b]"
// are told from that by a byte in front, taken off again from whatever comes out.
constexpr char SHIELD = '\1';

std::string Shield(const std::string& argument) {
  const bool needsIt = !argument.empty() && (argument[0] == '[' || argument[0] == SHIELD);
  return needsIt ? SHIELD + argument : argument;
}

void Unshield(std::string* argument) {
  if (!argument->empty() && argument->front() == SHIELD) argument->erase(0, 1);
}

std::string CommandLineNames(const OptionRow& row) {
  std::string names = "--" + std::string(row.longName);
  if (row.shortName != 0) names += std::string(",-") + row.shortName;
  return names;
}

bool MayBeLeftOut(const OptionRow& row) { return row.argument.starts_with('['); }

void Define(const OptionRow& row, CLI::App* app, Options* options) {
  const std::string names = CommandLineNames(row);
  if (const auto* flag = std::get_if<bool O::*>(&row.target)) {
    // A flag takes no value, so --json=false is an error, not a way to say no.
    app->add_flag(names, options->**flag)->disable_flag_override();
  } else if (const auto* list = std::get_if<std::vector<std::string> O::*>(&row.target)) {
    app->add_option(names, options->**list)->allow_extra_args(false);
  } else {
    std::string& target = options->*std::get<std::string O::*>(row.target);
    if (MayBeLeftOut(row)) {
      app->add_flag("--" + std::string(row.longName) + "{always}", target);
    } else {
      app->add_option(names, target)->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    }
  }
}

void UnshieldAll(Options* options) {
  for (const OptionRow& row : OPTIONS) {
    if (const auto* list = std::get_if<std::vector<std::string> O::*>(&row.target)) {
      for (std::string& text : options->**list) Unshield(&text);
    } else if (const auto* text = std::get_if<std::string O::*>(&row.target)) {
      Unshield(&(options->**text));
    }
  }
  for (std::string& path : options->paths) Unshield(&path);
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

bool IsOneOf(std::string_view word, std::string_view words) {
  const std::vector<std::string_view> all = Split(words, ' ');
  return std::find(all.begin(), all.end(), word) != all.end();
}

std::string CheckChoices(const Options& options) {
  for (const OptionRow& row : OPTIONS) {
    const auto* target = std::get_if<std::string O::*>(&row.target);
    if (row.choices.empty() || target == nullptr || (options.**target).empty()) continue;
    for (const std::string_view word : Split(options.**target, ',')) {
      if (!IsOneOf(word, row.choices)) {
        return "--" + std::string(row.longName) + ": '" + std::string(word) +
               "' is none of: " + std::string(row.choices);
      }
    }
  }
  return {};
}

// 0x0305, 773 or a label; 0 when it is none of the suite's filters.
int ParseId(std::string_view text) {
  if (const catalogue::Filter* filter = catalogue::FindFilter(text); filter != nullptr)
    return filter->id;
  const bool isHex = text.starts_with("0x") || text.starts_with("0X");
  // 0305 could be meant either way.
  if (!isHex && text.starts_with('0')) return 0;
  if (isHex) text.remove_prefix(2);
  int id = 0;
  const auto [end, error] =
      std::from_chars(text.data(), text.data() + text.size(), id, isHex ? 16 : 10);
  const bool isNumber = error == std::errc() && end == text.data() + text.size();
  return isNumber && CheckValidFilterID(id) != 0 ? id : 0;
}

std::string NoFilter(std::string_view option, std::string_view word) {
  return std::string(option) + ": no filter '" + std::string(word) + "' (see --list-filters)";
}

std::string ParseCandidates(Options* options) {
  if (options->candidateText.empty()) return {};
  for (const std::string_view word : Split(options->candidateText, ',')) {
    const std::size_t before = options->candidates.size();
    for (const catalogue::Filter& filter : catalogue::Filters()) {
      if (catalogue::Family(filter.id) == word) {
        options->candidates.push_back(RowOf(filter));
      }
    }
    if (options->candidates.size() != before) continue;
    const int id = ParseId(word);
    if (id == 0) return NoFilter("--candidates", word);
    // Identifiers without a row match nothing, as row 0 does.
    const catalogue::Filter* filter = catalogue::FindFilter(id);
    options->candidates.push_back(filter == nullptr ? 0 : std::max(RowOf(*filter), 0));
  }
  return {};
}

std::string ParseFilter(std::string_view option, const std::string& text, int* id) {
  if (text.empty()) return {};
  *id = ParseId(text);
  return *id == 0 ? NoFilter(option, text) : std::string();
}

std::string ParseJobs(Options* options) {
  constexpr unsigned MOST = 256;
  const std::string& text = options->jobsText;
  if (text.empty()) {
    options->jobs = std::clamp(std::thread::hardware_concurrency(), 1u, MOST);
    return {};
  }
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), options->jobs);
  const bool isNumber = error == std::errc() && end == text.data() + text.size();
  return isNumber && options->jobs >= 1 && options->jobs <= MOST
             ? std::string()
             : "--jobs: a number from 1 to 256 is needed, not '" + text + "'";
}

void ParseFailOn(Options* options) {
  for (const std::string_view word : Split(options->failOnText, ',')) {
    options->failOnUnknown |= word == "unknown";
    options->failOnMismatch |= word == "mismatch";
    options->failOnUnreadable |= word == "unreadable";
  }
}

std::string CheckTogether(const Options& options) {
  const int shapes = options.id + options.mime + options.label + !options.format.empty() +
                     options.json + options.jsonLines + options.csv + (options.check != 0);
  if (shapes > 1) {
    return "only one of --id, --mime-type, --label, --format, --json, --jsonl, --csv and --check";
  }
  if (options.json && options.print0) return "--json is one record; use --jsonl with --print0";
  if (options.check != 0 && (options.all || !options.candidates.empty() || options.mismatch)) {
    return "--check asks one filter; it goes with none of --all, --candidates and --mismatch";
  }
  const auto content = std::count(options.paths.begin(), options.paths.end(), "-");
  const auto lists = std::count(options.lists.begin(), options.lists.end(), "-");
  if (content + lists > 1) return "standard input can be taken once only";
  if (!options.contentName.empty() && content == 0) return "--name needs the path -";
  const bool hasNoInput = options.paths.empty() && options.lists.empty();
  const bool needsInput = !options.listFilters && options.completion.empty();
  return hasNoInput && needsInput ? "no PATH given; see --help" : "";
}

std::string FillIn(Options* options) {
  if (std::string wrong = CheckChoices(*options); !wrong.empty()) return wrong;
  ParseFailOn(options);
  if (std::string wrong = ParseCandidates(options); !wrong.empty()) return wrong;
  if (std::string wrong = ParseFilter("--requested", options->requestedText, &options->requested);
      !wrong.empty()) {
    return wrong;
  }
  if (std::string wrong = ParseFilter("--check", options->checkText, &options->check);
      !wrong.empty()) {
    return wrong;
  }
  if (std::string wrong = ParseJobs(options); !wrong.empty()) return wrong;
  if (std::string wrong = CheckTemplate(options->format); !wrong.empty()) {
    return "--format: " + wrong;
  }
  return CheckTogether(*options);
}

}  // namespace

std::span<const OptionRow> OptionTable() { return OPTIONS; }

std::string ParseOptions(const std::vector<std::string>& arguments, Options* options) {
  CLI::App app;
  app.set_help_flag();
  app.allow_windows_style_options(false);
  for (const OptionRow& row : OPTIONS) Define(row, &app, options);
  app.add_option("PATH", options->paths);

  // CLI11 wants them last to first.
  std::vector<std::string> reversed;
  std::transform(arguments.rbegin(), arguments.rend(), std::back_inserter(reversed), Shield);
  try {
    app.parse(std::move(reversed));
  } catch (const CLI::ParseError& error) {
    return error.what();
  }
  UnshieldAll(options);
  if (options->help || options->version || options->manual) return {};
  return FillIn(options);
}

}  // namespace typescout::cli
