#include "cli/help.h"
#include "cli/options.h"

namespace typescout::cli {
namespace {

using Takes = OptionRow::Takes;

bool IsOptional(const OptionRow& row) { return row.argument.starts_with('['); }

bool IsList(const OptionRow& row) {
  return row.takes == Takes::WORDS || row.takes == Takes::FILTERS || row.takes == Takes::ANSWERS;
}

// What the option's value can be, with spaces between.
std::string Choices(const OptionRow& row) {
  std::string choices;
  for (const std::string_view value : ValuesOf(row)) {
    if (!choices.empty()) choices += ' ';
    choices += value;
  }
  return choices;
}

std::string Long(const OptionRow& row) { return "--" + std::string(row.longName); }

std::string Names(const OptionRow& row, std::string_view separator) {
  std::string names = Long(row);
  if (row.shortName != 0) names += std::string(separator) + "-" + row.shortName;
  return names;
}

// Readline takes "--option=value" apart at the "=", or does not, as COMP_WORDBREAKS says. Where
// nothing is put into COMPREPLY, it completes names of files by itself.
std::string Bash() {
  std::string words;
  std::string cases;
  for (const OptionRow& row : OptionTable()) {
    if (row.group.empty()) continue;
    words += (words.empty() ? "" : " ") + Names(row, " ");
    if (row.takes == Takes::NOTHING) continue;
    // An option with "=" in front is one that has its value behind "=".
    cases += "    =" + Names(row, "|=") + (IsOptional(row) ? "" : "|" + Names(row, "|")) + ")\n";
    if (row.takes != Takes::FILE) {
      cases += "      compopt +o default\n";
      if (IsList(row)) {
        cases += "      [[ $current == *,* ]] && prefix+=${current%,*}, current=${current##*,}\n";
      }
      cases +=
          "      COMPREPLY=($(compgen -P \"$prefix\" -W '" + Choices(row) + "' -- \"$current\"))\n";
    }
    cases += "      return ;;\n";
  }
  return "_typescout() {\n"
         "  local current=${COMP_WORDS[COMP_CWORD]} option=${COMP_WORDS[COMP_CWORD-1]} prefix=\n"
         "  if [[ $current == --*=* ]]; then\n"
         "    prefix=${current%%=*}= option==${current%%=*} current=${current#*=}\n"
         "  elif [[ $current == = ]]; then\n"
         "    option==$option current=\n"
         "  elif [[ $option == = ]]; then\n"
         "    option==${COMP_WORDS[COMP_CWORD-2]}\n"
         "  fi\n"
         "  COMPREPLY=()\n"
         "  case $option in\n" +
         cases +
         "  esac\n"
         "  if [[ $current == -* ]]; then\n"
         "    compopt +o default\n"
         "    COMPREPLY=($(compgen -W '" +
         words +
         "' -- \"$current\"))\n"
         "  fi\n"
         "}\n"
         "complete -o default -F _typescout typescout\n";
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

// What zsh is to offer after the option; empty where it takes no value.
std::string ZshAction(const OptionRow& row) {
  if (row.takes == Takes::NOTHING) return {};
  const std::string choices = Choices(row);
  const std::string action = IsOptional(row) ? "::WHEN:" : ":" + std::string(row.argument) + ":";
  if (row.takes == Takes::FILE) return action + "_files";
  if (choices.empty()) return action + " ";
  return action + (IsList(row) ? " _sequence compadd - " + choices : "(" + choices + ")");
}

std::string Zsh() {
  std::string script = "#compdef typescout\n_typescout() {\n  _arguments -s -S \\\n";
  for (const OptionRow& row : OptionTable()) {
    if (row.group.empty()) continue;
    const std::string rest = "[" + Escape(row.help, ":[]") + "]" + ZshAction(row) + "' \\\n";
    const bool takesNothing = row.takes == Takes::NOTHING;
    script += "    '*" + Long(row) + (takesNothing ? "" : IsOptional(row) ? "=-" : "=") + rest;
    if (row.shortName == 0) continue;
    script += std::string("    '*-") + row.shortName + (takesNothing ? "" : "+") + rest;
  }
  return script +
         "    '*:file:_files'\n"
         "}\n"
         "# Autoloaded as a function of that name, or evaluated.\n"
         "if [[ $funcstack[1] == _typescout ]]; then\n"
         "  _typescout \"$@\"\n"
         "else\n"
         "  (( $+functions[compdef] )) || { autoload -Uz compinit && compinit }\n"
         "  compdef _typescout typescout\n"
         "fi\n";
}

std::string Fish() {
  std::string script;
  for (const OptionRow& row : OptionTable()) {
    if (row.group.empty()) continue;
    const std::string choices = Choices(row);
    const std::string start = "complete -c typescout ";
    script += start;
    if (row.shortName != 0) script += std::string("-s ") + row.shortName + " ";
    script += "-l " + std::string(row.longName) + " -d '" + Escape(row.help, "") + "'";
    if (IsOptional(row)) {
      script.append("\n").append(start).append("-n 'string match -q -- \"").append(Long(row));
      script.append("=*\" (commandline -ct)' -f -a '").append(Long(row));
      script.append("=(string split \" \" \"").append(choices).append("\")'");
    } else if (IsList(row)) {
      script +=
          " -x -a '(__fish_complete_list , \"string split \\\" \\\" \\\"" + choices + "\\\"\")'";
    } else if (row.takes == Takes::FILE) {
      script += " -r -F";
    } else if (row.takes != Takes::NOTHING) {
      script += " -x -a '" + choices + "'";
    }
    script += "\n";
  }
  return script;
}

}  // namespace

std::string CompletionScript(std::string_view shell) {
  return shell == "bash" ? Bash() : shell == "zsh" ? Zsh() : Fish();
}

}  // namespace typescout::cli
