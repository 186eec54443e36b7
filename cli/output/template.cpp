#include "cli/output/template.h"

#include "cli/output/fields.h"
#include "cli/output/names.h"

namespace typescout::cli {
namespace {

// Goes through the template piece by piece: `literal` gets text, `field` a field's name. Returns
// what is wrong with the first piece that is, and stops there.
template <typename Literal, typename FieldName>
std::string ForEachPiece(std::string_view text, Literal literal, FieldName field) {
  while (!text.empty()) {
    const char first = text.front();
    const char second = text.size() > 1 ? text[1] : '\0';
    std::size_t length = 2;
    if (first == '\\') {
      switch (second) {
        case 'n':
          literal('\n');
          break;
        case 't':
          literal('\t');
          break;
        case '\\':
          literal('\\');
          break;
        default:
          return "\\ is followed by n, t or \\";
      }
    } else if ((first == '{' || first == '}') && second == first) {
      literal(first);
    } else if (first == '}') {
      return "} alone is written }}";
    } else if (first == '{') {
      const std::size_t end = text.find('}');
      if (end == std::string_view::npos) return "{ without }; alone it is written {{";
      const std::string_view name = text.substr(1, end - 1);
      if (FindField(name) == nullptr) return "no field {" + std::string(name) + "}";
      field(*FindField(name));
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
      text, [](char) {}, [](const Field&) {});
}

std::string FillTemplate(std::string_view text, const Record& record, bool forTerminal) {
  std::string filled;
  ForEachPiece(
      text, [&](char c) { filled += c; },
      [&](const Field& field) {
        const std::string value = field.value(record);
        filled += forTerminal ? EscapeForTerminal(value) : value;
      });
  return filled;
}

}  // namespace typescout::cli
