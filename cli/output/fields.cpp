#include "cli/output/fields.h"

#include <algorithm>
#include <array>

#include "cli/escape.h"
#include "cli/options.h"
#include "cli/utf8.h"

namespace typescout::cli {
namespace {

using catalogue::FormatId;

Value TextOrNothing(std::string_view text) { return text.empty() ? Value() : Value(text); }

std::string IdOf(const Filter* filter) { return FormatId(filter == nullptr ? 0 : filter->id); }

// A path in its parts. What separates them is found from the end, so that "a.tar.gz" has "gz".
struct Parts {
  std::string_view folder;  // "." where the path has none
  std::string_view stem;
  std::string_view extension;  // as written
};

Parts Divide(std::string_view path) {
  std::size_t nameAt = path.size();
  while (nameAt > 0 && !platform::IsSeparator(path[nameAt - 1])) --nameAt;
  const std::string_view name = path.substr(nameAt);
  const std::size_t dot = name.rfind('.');
  const bool hasExtension = dot != std::string_view::npos && dot != 0;
  return {.folder = nameAt == 0 ? "." : path.substr(0, std::max<std::size_t>(nameAt - 1, 1)),
          .stem = name.substr(0, hasExtension ? dot : name.size()),
          .extension = hasExtension ? name.substr(dot + 1) : std::string_view()};
}

std::string_view ChangeLabel(Change change) {
  switch (change) {
    case Change::CHANGED:
      return "changed";
    case Change::APPEARED:
      return "appeared";
    case Change::WENT:
      return "went";
    default:
      return "";
  }
}

using enum Field<Record>::Use;
using R = Record;

// clang-format off
constexpr auto RECORD_FIELDS = std::to_array<Field<Record>>({
    {"path", ALWAYS, [](const R& r) -> Value { return std::string_view(r.path); },
     "The path as given or met; in JSON with U+FFFD for bytes that are not UTF-8, in CSV with control characters and such bytes escaped (\\n, \\x1B)."},
    {"path_bytes", JSON_AND_CSV, [](const R& r) -> Value { return IsValidUtf8(r.path) ? Value() : Value(Base64(r.path)); },
     "The path's true bytes in base64, where \"path\" does not have them."},
    {"status", ALWAYS, [](const R& r) -> Value { return StateLabel(r.state); },
     "recognised, unknown (no filter accepts the file), empty (nothing to read), unreadable, cut-short (became shorter while it was read) or not-examined (no regular file)."},
    {"kind", ALWAYS, [](const R& r) -> Value { return KindLabel(r.kind); },
     "file, folder, fifo, socket, character-device, block-device, link or other."},
    {"size", ALWAYS, [](const R& r) -> Value { return r.size ? Value(*r.size) : Value(); },
     "The file's size in bytes."},
    {"mtime", ALWAYS, [](const R& r) -> Value { return r.modified ? Value(FormatTime(*r.modified)) : Value(); },
     "When the file was last changed (RFC 3339, UTC)."},
    {"id", ALWAYS, [](const R& r) -> Value { return IdOf(r.filter); },
     "The answer: the identifier of the first filter that accepts the file, 0x0000 for none."},
    {"label", ALWAYS, [](const R& r) -> Value { return Label(r, r.filter); },
     "The answer's label, or the status or kind."},
    {"name", ALWAYS, [](const R& r) -> Value { return Name(r, r.filter); },
     "The answer's name, or the status or kind in words."},
    {"family", ALWAYS, [](const R& r) -> Value { return TextOrNothing(r.filter == nullptr ? "" : catalogue::Family(r.filter->id)); },
     "The answer's family: raster, vector, media, native, document or text."},
    {"mime", ALWAYS, [](const R& r) -> Value { return MimeType(r, r.filter); },
     "The answer's MIME type; application/octet-stream where it has none, inode/... for what is no file."},
    {"best_id", ALWAYS, [](const R& r) -> Value { return IdOf(r.best); },
     "The identifier of the best filter: the most specific of those that accept the file."},
    {"best_label", ALWAYS, [](const R& r) -> Value { return Label(r, r.best); },
     "The best filter's label, or the status or kind."},
    {"best_name", ALWAYS, [](const R& r) -> Value { return Name(r, r.best); },
     "The best filter's name, or the status or kind in words."},
    {"best_mime", ALWAYS, [](const R& r) -> Value { return MimeType(r, r.best); },
     "The best filter's MIME type; else as in mime."},
    {"best_extension", ALWAYS, [](const R& r) -> Value { return TextOrNothing(r.best == nullptr ? "" : UsualExtension(*r.best)); },
     "The best filter's usual extension, without the dot."},
    {"all", ALWAYS, [](const R& r) -> Value { return r.all.empty() ? Value() : Value(r.all); },
     "With --all, every filter that accepts the file, in the registry's order."},
    {"mismatch", ALWAYS, [](const R& r) -> Value { return r.filter == nullptr ? Value() : Value(!r.expected.empty()); },
     "Whether the path's extension does not fit the best filter."},
    {"expected", ALWAYS, [](const R& r) -> Value { return TextOrNothing(r.expected); },
     "The best filter's usual extension, where the path has another that does not fit."},
    {"extension", ALWAYS, [](const R& r) -> Value { std::string text = catalogue::ExtensionOf(r.path); return text.empty() ? Value() : Value(std::move(text)); },
     "The path's extension in lower case, without the dot."},
    {"reason", ALWAYS, [](const R& r) -> Value { return TextOrNothing(r.reason); },
     "Why an input is unreadable or cut-short."},
    {"change", COMPARE, [](const R& r) -> Value { return TextOrNothing(ChangeLabel(r.change)); },
     "With --compare: changed, appeared or went."},
    {"old_id", COMPARE, [](const R& r) -> Value { return r.change == Change::APPEARED ? Value() : Value(FormatId(r.oldId)); },
     "With --compare: the earlier answer's identifier."},
    {"old_best_id", COMPARE, [](const R& r) -> Value { return r.change == Change::APPEARED ? Value() : Value(FormatId(r.oldBestId)); },
     "With --compare: the identifier of the earlier best filter."},
    {"candidates", RESTRICTED, [](const R& r) -> Value { return r.asked.candidates.empty() ? Value() : Value(r.asked.candidates); },
     "With --candidates: the filters that were asked."},
    {"requested", RESTRICTED, [](const R& r) -> Value { return TextOrNothing(r.asked.requested); },
     "With --requested: the identifier."},
    {"dir", TEMPLATE, [](const R& r) -> Value { return Divide(r.path).folder; },
     "The path without its last component; \".\" where it has only one."},
    {"stem", TEMPLATE, [](const R& r) -> Value { return Divide(r.path).stem; },
     "The path's last component without its extension."},
    {"ext", TEMPLATE, [](const R& r) -> Value { return Divide(r.path).extension; },
     "The path's extension as it is written, without the dot."},
});

constexpr auto FILTER_FIELDS = std::to_array<Field<Filter>>({
    {"row", Field<Filter>::Use::ALWAYS, [](const Filter& f) -> Value { return static_cast<std::uint64_t>(RowOf(f)); }, ""},
    {"id", Field<Filter>::Use::ALWAYS, [](const Filter& f) -> Value { return FormatId(f.id); }, ""},
    {"label", Field<Filter>::Use::ALWAYS, [](const Filter& f) -> Value { return f.label; }, ""},
    {"name", Field<Filter>::Use::ALWAYS, [](const Filter& f) -> Value { return f.name; }, ""},
    {"family", Field<Filter>::Use::ALWAYS, [](const Filter& f) -> Value { return catalogue::Family(f.id); }, ""},
    {"mime", Field<Filter>::Use::ALWAYS, [](const Filter& f) -> Value { return TextOrNothing(f.mime); }, ""},
    {"extensions", Field<Filter>::Use::ALWAYS, [](const Filter& f) -> Value {
       std::vector<std::string> words;
       if (!f.extensions.empty()) for (const std::string_view word : Split(f.extensions, ' ')) words.emplace_back(word);
       return words;
     }, ""},
    {"never_reported", Field<Filter>::Use::ALWAYS, [](const Filter& f) -> Value { return f.evidence == catalogue::Evidence::NEVER; }, ""},
    {"hidden_by", Field<Filter>::Use::ALWAYS, [](const Filter& f) -> Value {
       std::vector<std::string> ids;
       for (const int id : f.hiddenBy) if (id != 0) ids.push_back(FormatId(id));
       return ids;
     }, ""},
});
// clang-format on

template <typename... Cases>
struct Overloaded : Cases... {
  using Cases::operator()...;
};
template <typename... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

template <typename Each>
std::string Joined(const std::vector<Each>& list, auto toText, std::string_view separator) {
  std::string text;
  for (const Each& each : list) {
    if (&each != &list.front()) text += separator;
    text += toText(each);
  }
  return text;
}

std::string JsonString(std::string_view text) {
  std::string json;
  AppendJsonString(text, &json);
  return json;
}

// A filter where it is one of several.
std::string JsonFilter(const Filter* filter) {
  return "{\"id\":" + JsonString(FormatId(filter->id)) + ",\"label\":" + JsonString(filter->label) +
         ",\"name\":" + JsonString(filter->name) + "}";
}

void AppendJson(const Value& value, std::string* json) {
  std::visit(Overloaded{
                 [](std::monostate) {},
                 [json](bool flag) { *json += flag ? "true" : "false"; },
                 [json](std::uint64_t number) { *json += std::to_string(number); },
                 [json](std::string_view text) { AppendJsonString(text, json); },
                 [json](const std::string& text) { AppendJsonString(text, json); },
                 [json](const std::vector<const Filter*>& filters) {
                   *json += "[" + Joined(filters, JsonFilter, ",") + "]";
                 },
                 [json](const std::vector<std::string>& words) {
                   *json += "[" + Joined(words, JsonString, ",") + "]";
                 },
             },
             value);
}

void AppendCsv(std::string_view value, bool isSafe, std::string* line) {
  std::string text = EscapeControls(value);
  if (isSafe && !text.empty() && std::string_view("=+-@").find(text[0]) != std::string_view::npos) {
    text.insert(0, 1, '\'');
  }
  if (!line->empty()) *line += ',';
  if (!text.empty() && text.find_first_of("\",") == std::string::npos) {
    *line += text;
    return;
  }
  // An empty value is quoted too: a line that begins with nothing would be taken for shorter.
  *line += '"';
  for (const char c : text) line->append(c == '"' ? 2 : 1, c);
  *line += '"';
}

// In CSV the path is escaped, so its bytes are needed more often.
Value CsvValue(const Field<Record>& field, const Record& record) {
  if (field.name != "path_bytes") return field.value(record);
  return EscapeControls(record.path) == record.path ? Value() : Value(Base64(record.path));
}
Value CsvValue(const Field<Filter>& field, const Filter& filter) { return field.value(filter); }

}  // namespace

std::span<const Field<Record>> RecordFields() { return RECORD_FIELDS; }
std::span<const Field<Filter>> FilterFields() { return FILTER_FIELDS; }

const Field<Record>* FindTemplateField(std::string_view name) {
  const auto found =
      std::find_if(RECORD_FIELDS.begin(), RECORD_FIELDS.end(), [name](const Field<Record>& field) {
        return field.name == name && field.use != JSON_AND_CSV;
      });
  return found == RECORD_FIELDS.end() ? nullptr : &*found;
}

std::string ToText(const Value& value) {
  return std::visit(
      Overloaded{
          [](std::monostate) { return std::string(); },
          [](bool flag) { return std::string(flag ? "true" : "false"); },
          [](std::uint64_t number) { return std::to_string(number); },
          [](std::string_view text) { return std::string(text); },
          [](const std::string& text) { return text; },
          [](const std::vector<const Filter*>& filters) { return Joined(filters, IdOf, " "); },
          [](const std::vector<std::string>& words) {
            return Joined(
                words, [](const std::string& word) { return word; }, " ");
          },
      },
      value);
}

template <typename Subject>
std::string JsonObject(std::span<const Field<Subject>> fields, const Subject& subject) {
  std::string json = "{";
  for (const Field<Subject>& field : fields) {
    const Value value = field.value(subject);
    if (std::holds_alternative<std::monostate>(value)) continue;
    if (json.size() != 1) json += ',';
    json.append("\"").append(field.name).append("\":");
    AppendJson(value, &json);
  }
  return json + "}";
}
template std::string JsonObject(std::span<const Field<Record>>, const Record&);
template std::string JsonObject(std::span<const Field<Filter>>, const Filter&);

template <typename Subject>
std::string CsvLine(std::span<const Field<Subject>> fields, const Subject& subject, bool isSafe) {
  std::string line;
  for (const Field<Subject>& field : fields) {
    AppendCsv(ToText(CsvValue(field, subject)), isSafe, &line);
  }
  return line;
}
template std::string CsvLine(std::span<const Field<Record>>, const Record&, bool);
template std::string CsvLine(std::span<const Field<Filter>>, const Filter&, bool);

template <typename Subject>
std::string CsvHeading(std::span<const Field<Subject>> fields) {
  std::string line;
  for (const Field<Subject>& field : fields) AppendCsv(field.name, false, &line);
  return line;
}
template std::string CsvHeading(std::span<const Field<Record>>);
template std::string CsvHeading(std::span<const Field<Filter>>);

}  // namespace typescout::cli
