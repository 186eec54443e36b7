#include "catalogue/filters.h"
#include "cli/help.h"
#include "cli/options.h"

namespace typescout::cli {
namespace {

constexpr std::string_view FAMILIES = "raster vector media native document text";

// What the option's argument can be: words, separated by spaces.
std::string Choices(const OptionRow& row) {
  if (!row.choices.empty()) return std::string(row.choices);
  if (row.argument == "ID" || row.longName == "candidates") {
    std::string labels(row.argument == "ID" ? "" : FAMILIES);
    for (const catalogue::Filter& filter : catalogue::Filters()) {
      const bool isFirst = catalogue::FindFilter(filter.id) == &filter;
      if (isFirst && filter.evidence != catalogue::Evidence::NEVER)
        labels += (labels.empty() ? "" : " ") + std::string(filter.label);
    }
    return labels;
  }
  return {};
}

bool NeedsArgument(const OptionRow& row) {
  return !row.argument.empty() && !row.argument.starts_with('[');
}

bool IsFile(const OptionRow& row) { return row.argument == "FILE"; }

std::string Long(const OptionRow& row) { return "--" + std::string(row.longName); }

std::string Names(const OptionRow& row, std::string_view separator) {
  std::string names = Long(row);
  if (row.shortName != 0) names += std::string(separator) + "-" + row.shortName;
  return names;
}

std::string Bash() {
  std::string words;
  std::string cases;
  for (const OptionRow& row : OptionTable()) {
    if (row.group.empty()) continue;
    words += (words.empty() ? "" : " ") + Names(row, " ");
    if (!NeedsArgument(row)) continue;
    const std::string choices = Choices(row);
    cases += "    " + Names(row, "|") + ")\n";
    if (!choices.empty()) {
      cases += "      COMPREPLY=($(compgen -W '" + choices + "' -- \"$current\"))\n";
    } else if (IsFile(row)) {
      cases += "      COMPREPLY=($(compgen -f -- \"$current\"))\n";
    }
    cases += "      return ;;\n";
  }
  return "_typescout() {\n"
         "  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}\n"
         "  COMPREPLY=()\n"
         "  case $previous in\n" +
         cases +
         "  esac\n"
         "  if [[ $current == -* ]]; then\n"
         "    COMPREPLY=($(compgen -W '" +
         words +
         "' -- \"$current\"))\n"
         "  else\n"
         "    COMPREPLY=($(compgen -f -- \"$current\"))\n"
         "  fi\n"
         "}\n"
         "complete -o filenames -F _typescout typescout\n";
}

// The text for between single quotes of a shell; `special` characters and backslashes are escaped
// for what reads it next.
std::string Escape(std::string_view text, std::string_view special) {
  std::string escaped;
  for (const char c : text) {
    if (c == '\'') {
      escaped += "'\\''";
      continue;
    }
    if (c == '\\' || special.find(c) != std::string_view::npos) escaped += '\\';
    escaped += c;
  }
  return escaped;
}

// What zsh is to offer after the option; empty where it takes no argument.
std::string ZshAction(const OptionRow& row) {
  if (row.argument.empty()) return {};
  const std::string choices = Choices(row);
  std::string action = NeedsArgument(row) ? ":" + std::string(row.argument) + ":" : ":WHEN:";
  if (!choices.empty()) return action + "(" + choices + ")";
  return action + (IsFile(row) ? "_files" : " ");
}

std::string Zsh() {
  std::string script = "#compdef typescout\n_arguments -s -S \\\n";
  for (const OptionRow& row : OptionTable()) {
    if (row.group.empty()) continue;
    const std::string rest = "[" + Escape(row.help, ":[]") + "]" + ZshAction(row) + "' \\\n";
    const std::string sign = row.argument.empty() ? "" : NeedsArgument(row) ? "=" : "=-";
    script.append("  '*").append(Long(row)).append(sign).append(rest);
    if (row.shortName == 0) continue;
    script.append("  '*-").append(1, row.shortName);
    script.append(row.argument.empty() ? "" : "+").append(rest);
  }
  return script + "  '*:file:_files'\n";
}

std::string Fish() {
  std::string script;
  for (const OptionRow& row : OptionTable()) {
    if (row.group.empty()) continue;
    script += "complete -c typescout";
    if (row.shortName != 0) script += std::string(" -s ") + row.shortName;
    script += " -l " + std::string(row.longName);
    if (NeedsArgument(row)) script += IsFile(row) ? " -r -F" : " -x";
    if (const std::string choices = Choices(row); !choices.empty() && !row.argument.empty()) {
      script += " -a '" + choices + "'";
    }
    script += " -d '" + Escape(row.help, "") + "'\n";
  }
  return script;
}

}  // namespace

std::string CompletionScript(std::string_view shell) {
  return shell == "bash" ? Bash() : shell == "zsh" ? Zsh() : Fish();
}

}  // namespace typescout::cli
