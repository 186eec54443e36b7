#include "cli/output/template.h"

#include "cli/escape.h"
#include "cli/output/fields.h"

namespace typescout::cli {
namespace {

// Goes through the template piece by piece: `literal` gets text, `field` a field and whether it is
// quoted. Returns what is wrong with the first piece that is, and stops there.
template <typename Literal, typename OnField>
std::string ForEachPiece(std::string_view text, Literal literal, OnField field) {
  constexpr std::string_view ESCAPES = "nt0\\";
  constexpr std::string_view ESCAPED("\n\t\0\\", 4);
  while (!text.empty()) {
    const char first = text.front();
    const char second = text.size() > 1 ? text[1] : '\0';
    std::size_t length = 2;
    if (first == '\\') {
      const std::size_t escape = text.size() > 1 ? ESCAPES.find(second) : std::string_view::npos;
      if (escape == std::string_view::npos) return "\\ is followed by n, t, 0 or \\";
      literal(ESCAPED[escape]);
    } else if ((first == '{' || first == '}') && second == first) {
      literal(first);
    } else if (first == '}') {
      return "} alone is written }}";
    } else if (first == '{') {
      const std::size_t end = text.find('}');
      if (end == std::string_view::npos) return "{ without }; alone it is written {{";
      std::string_view name = text.substr(1, end - 1);
      const bool isQuoted = name.ends_with("!q");
      if (isQuoted) name.remove_suffix(2);
      const Field<Record>* found = FindTemplateField(name);
      if (found == nullptr) return "no field {" + std::string(name) + "}";
      field(*found, isQuoted);
      length = end + 1;
    } else {
      literal(first);
      length = 1;
    }
    text.remove_prefix(length);
  }
  return {};
}

}  // namespace

std::string CheckTemplate(std::string_view text) {
  return ForEachPiece(
      text, [](char) {}, [](const Field<Record>&, bool) {});
}

std::string FillTemplate(std::string_view text, const Record& record, bool forTerminal) {
  std::string filled;
  ForEachPiece(
      text, [&](char c) { filled += c; },
      [&](const Field<Record>& field, bool isQuoted) {
        std::string value = ToText(field.value(record));
        if (isQuoted) value = QuoteForShell(value);
        filled += forTerminal ? EscapeControls(value) : value;
      });
  return filled;
}

}  // namespace typescout::cli
