#include "cli/help.h"

#include <algorithm>

#include "cli/options.h"
#include "cli/output/fields.h"

namespace typescout::cli {
namespace {

constexpr std::string_view SYNOPSIS = "typescout [OPTION]... PATH...";
constexpr std::string_view PURPOSE = "says which import filter can read a file";

struct Entry {
  std::string_view term;
  std::string_view text;
};

constexpr Entry EXITS[] = {
    {"0", "Every input was examined."},
    {"1", "--check found another format, a --fail-on finding, or --compare found a change."},
    {"2",
     "Some input could not be read; the others were done. It outranks 1, unless --fail-on "
     "unreadable makes it a finding."},
    {"64", "The command line or a list is not valid."},
    {"70", "Out of memory, or the library is of another version than the program."},
    {"74", "Standard output could not be written."},
    {"129, 130, 143",
     "Ended by a hangup, by Ctrl-C or by a request to end (TERM); the records so far are "
     "complete."},
    {"141", "Ended because the reader of standard output has gone."},
};

constexpr Entry EXAMPLES[] = {
    {"typescout -r --summary ~/Pictures", "What is in the folder, by type."},
    {"typescout -r --mismatch ~/Pictures", "Files whose extension is not what they are."},
    {"typescout -r --only tiff -0 . | xargs -0 tiffinfo", "Every TIFF, whatever its name."},
    {"find . -type f -print0 | typescout -f - --null --jsonl", "A record for each path of a list."},
    {"typescout --check gif upload.bin && echo fine", "Whether a file is a GIF picture."},
};

std::string ArgumentPart(const OptionRow& row) {
  if (row.argument.empty()) return {};
  if (row.argument.starts_with('[')) return "[=" + std::string(row.argument.substr(1));
  return "=" + std::string(row.argument);
}

std::string Usage(const OptionRow& row) {
  const std::string shortForm =
      row.shortName == 0 ? "    " : std::string("-") + row.shortName + ", ";
  return shortForm + "--" + std::string(row.longName) + ArgumentPart(row);
}

// `text` broken into lines of at most `width` characters, each but the first behind `indent`.
std::string Wrap(std::string_view text, std::size_t width, const std::string& indent) {
  std::string wrapped;
  while (text.size() > width) {
    const std::size_t end = std::min(text.rfind(' ', width), text.size());
    wrapped += std::string(text.substr(0, end)) + "\n" + indent;
    text.remove_prefix(end + 1);
  }
  return wrapped + std::string(text);
}

// A term and what it means, in two columns, the second at `column`.
std::string Row(const std::string& term, std::string_view text, std::size_t column) {
  constexpr std::size_t WIDTH = 80;
  std::string entry = "  " + term;
  if (entry.size() + 2 > column) {
    entry += "\n" + std::string(column, ' ');
  } else {
    entry.resize(column, ' ');
  }
  return entry + Wrap(text, WIDTH - column, std::string(column, ' ')) + "\n";
}

// For roff: hyphens that are typed as such, no lines taken for requests.
std::string Roff(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '\\':
        escaped += "\\e";
        break;
      case '-':
        escaped += "\\-";
        break;
      case '\'':
        escaped += "\\(aq";
        break;
      case '.':
        escaped += escaped.empty() ? "\\&." : ".";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

template <typename Heading, typename Row>
void ForEachShown(Heading heading, Row row) {
  std::string_view group;
  for (const OptionRow& option : OptionTable()) {
    if (option.group.empty()) continue;
    if (option.group != group) heading(option.group);
    group = option.group;
    row(option);
  }
}

}  // namespace

std::string HelpText() {
  constexpr std::size_t COLUMN = 27;
  std::string text = "Usage: " + std::string(SYNOPSIS) + "\ntypescout " + std::string(PURPOSE) +
                     ". PATH - is standard input.\n";
  ForEachShown([&text](std::string_view group) { text += "\n" + std::string(group) + ":\n"; },
               [&text](const OptionRow& row) { text += Row(Usage(row), row.help, COLUMN); });
  text += "\nExamples:\n";
  for (const auto& [command, meaning] : EXAMPLES) {
    text += "  " + std::string(command) + "\n      " + std::string(meaning) + "\n";
  }
  text += "\nExit status:\n";
  for (const auto& [status, meaning] : EXITS) text += Row(std::string(status), meaning, 12);
  return text;
}

std::string ManualPage(std::string_view version) {
  std::string page = ".TH TYPESCOUT 1 \"\" \"typescout " + std::string(version) + "\"\n";
  const auto heading = [&page](std::string_view text) {
    page += ".SH \"";
    for (const char c : text) page += c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    page += "\"\n";
  };
  const auto entry = [&page](std::string_view term, std::string_view text) {
    page += ".TP\n.B " + Roff(term) + "\n" + Roff(text) + "\n";
  };
  page += ".SH NAME\ntypescout \\- " + Roff(PURPOSE) + "\n";
  page += ".SH SYNOPSIS\n.B typescout\n[\\fIOPTION\\fR]... \\fIPATH\\fR...\n";
  page +=
      ".SH DESCRIPTION\n"
      "Asks the suite's import filters, in their order, about each file, and prints the "
      "identifier\n"
      "and the name of the first that accepts the file; 0x0000 when none does. Only regular "
      "files are\n"
      "opened. \\fIPATH\\fR \\- is content from standard input.\n.PP\n"
      "Some filters accept more than one format and are asked early. When another filter accepts\n"
      "the file too and describes it better, that one is named as well, as the best.\n.PP\n"
      "Each input has one line. Control characters in its name, and bytes that are not UTF\\-8, "
      "are\n"
      "written as \\en or \\ex1B, and a backslash in such a name is doubled. \\-\\-json has names "
      "as\n"
      "they are, and so have \\-0 and \\-\\-format where the output is no terminal.\n";
  ForEachShown(heading, [&page](const OptionRow& row) {
    page += ".TP\n";
    if (row.shortName != 0) page += std::string("\\fB\\-") + row.shortName + "\\fR, ";
    page += "\\fB\\-\\-" + Roff(row.longName) + "\\fR" + Roff(ArgumentPart(row)) + "\n" +
            Roff(row.help) + "\n";
  });
  heading("Fields");
  page +=
      "The fields of a record in JSON and CSV, in this order, and for \\-\\-format. JSON leaves "
      "out\nwhat does not apply; elsewhere it is empty.\n";
  for (const Field<Record>& field : RecordFields()) {
    using enum Field<Record>::Use;
    const std::string_view where = field.use == TEMPLATE       ? " (--format only)"
                                   : field.use == JSON_AND_CSV ? " (not in --format)"
                                                               : "";
    entry(std::string(field.name) + std::string(where), field.help);
  }
  heading("Exit status");
  for (const auto& [status, meaning] : EXITS) entry(status, meaning);
  heading("Environment");
  entry("NO_COLOR", "When not empty: no colours, unless they are asked for.");
  entry("TMPDIR", "Where content from standard input is kept while it is examined.");
  entry("TVN_FILTERS_DIR", "Where the PDF import module is looked for.");
  heading("Examples");
  for (const auto& [command, meaning] : EXAMPLES) entry(command, meaning);
  return page;
}

}  // namespace typescout::cli
