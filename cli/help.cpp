#include "cli/help.h"

#include <algorithm>

#include "cli/options.h"

namespace typescout::cli {
namespace {

constexpr std::string_view SYNOPSIS = "typescout [OPTION]... PATH...";
constexpr std::string_view PURPOSE = "says which import filter can read a file";

struct Exit {
  std::string_view status;
  std::string_view meaning;
};

constexpr Exit EXITS[] = {
    {"0", "Every input was examined."},
    {"1", "--check said no, or a --fail-on finding."},
    {"2",
     "Some input could not be read; the others were done. It outranks 1, unless --fail-on "
     "unreadable makes it a finding."},
    {"64", "The command line makes no sense."},
    {"74", "Standard output could not be written."},
    {"130, 141",
     "Ended by Ctrl-C, with the records so far complete; ended because nobody reads "
     "standard output any more."},
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

std::string Entry(const std::string& term, std::string_view text, std::size_t column) {
  constexpr std::size_t WIDTH = 100;
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
  constexpr std::size_t COLUMN = 28;
  std::string text = "Usage: " + std::string(SYNOPSIS) + "\ntypescout " + std::string(PURPOSE) +
                     ". PATH - is standard input.\n";
  ForEachShown([&text](std::string_view group) { text += "\n" + std::string(group) + ":\n"; },
               [&text](const OptionRow& row) { text += Entry(Usage(row), row.help, COLUMN); });
  text += "\nExit status:\n";
  for (const Exit& exit : EXITS) text += Entry(std::string(exit.status), exit.meaning, 12);
  return text;
}

std::string ManualPage(std::string_view version) {
  std::string page = ".TH TYPESCOUT 1 \"\" \"typescout " + std::string(version) + "\"\n";
  page += ".SH NAME\ntypescout \\- " + Roff(PURPOSE) + "\n";
  page += ".SH SYNOPSIS\n.B typescout\n[\\fIOPTION\\fR]... \\fIPATH\\fR...\n";
  page +=
      ".SH DESCRIPTION\n"
      "Asks the suite's import filters, in their order, about each file, and prints the "
      "identifier\n"
      "and the name of the first that says yes; 0x0000 when none does. Only regular files are\n"
      "opened. \\fIPATH\\fR \\- is content from standard input, of which the first 50,000 bytes\n"
      "are examined.\n.PP\n"
      "Some filters have no mark of their own to go by and stand early. Where the first yes is "
      "not\n"
      "what the file\\(aqs extension says, but another filter that says yes as well is, that one\n"
      "is named too.\n";
  ForEachShown(
      [&page](std::string_view group) {
        std::string heading(group);
        std::transform(heading.begin(), heading.end(), heading.begin(), [](char c) {
          return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
        });
        page += ".SH \"" + heading + "\"\n";
      },
      [&page](const OptionRow& row) {
        page += ".TP\n";
        if (row.shortName != 0) page += std::string("\\fB\\-") + row.shortName + "\\fR, ";
        page += "\\fB\\-\\-" + Roff(row.longName) + "\\fR" + Roff(ArgumentPart(row)) + "\n" +
                Roff(row.help) + "\n";
      });
  page += ".SH \"EXIT STATUS\"\n";
  for (const Exit& exit : EXITS) {
    page += ".TP\n.B " + Roff(exit.status) + "\n" + Roff(exit.meaning) + "\n";
  }
  page +=
      ".SH ENVIRONMENT\n.TP\n.B NO_COLOR\nWhen not empty: no colours, unless they are asked for.\n"
      ".TP\n.B TVN_FILTERS_DIR\nWhere the PDF import module is looked for.\n"
      ".SH EXAMPLES\n.nf\ntypescout holiday.gif scan.tif\n"
      "typescout \\-r \\-\\-mismatch ~/Pictures\n"
      "find . \\-type f \\-print0 | typescout \\-f \\- \\-\\-null \\-\\-jsonl\n"
      "typescout \\-\\-check gif upload.bin && echo fine\n.fi\n";
  return page;
}

}  // namespace typescout::cli
