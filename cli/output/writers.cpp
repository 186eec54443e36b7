#include "cli/output/writers.h"

#include <algorithm>

#include "cli/ask/examiner.h"
#include "cli/escape.h"
#include "cli/output/fields.h"
#include "cli/output/template.h"
#include "typescout/typescout.h"

namespace typescout::cli {
namespace {

using catalogue::FormatId;

// Lines of text: path: identifier name.
class TextWriter : public Writer {
 public:
  TextWriter(const Options& options, bool isTerminal, bool isColored)
      : options_(options), isTerminal_(isTerminal), isColored_(isColored) {}

  std::string Format(const Record& record) const override {
    std::string line;
    if (options_.shape == Shape::TEMPLATE) {
      line = FillTemplate(*options_.format, record, isTerminal_);
    } else {
      if (!options_.brief || options_.shape == Shape::NAMES) line = InLine(record.path);
      if (options_.shape != Shape::NAMES) {
        if (!options_.brief) line += ": ";
        AppendWhat(record, &line);
      }
    }
    line += options_.print0 ? '\0' : '\n';
    return line;
  }

  bool NeedsStatus() const override { return options_.shape == Shape::TEMPLATE; }

 private:
  // So that an input has one line, whatever its name.
  std::string InLine(const std::string& text) const {
    return isTerminal_ || !options_.print0 ? EscapeControls(text) : text;
  }

  void AppendWhat(const Record& record, std::string* line) const {
    switch (options_.shape) {
      case Shape::MIME_TYPE:
        *line += MimeType(record, record.best);
        return;
      case Shape::ID:
      case Shape::LABEL:
        return AppendAnswers(record, line);
      default:
        break;
    }
    if (record.change == Change::WENT) {
      *line += "went";
    } else if (IsUnreadable(record)) {
      line->append(Colored(Label(record, nullptr))).append(": ").append(InLine(record.reason));
    } else {
      AppendAnswers(record, line);
      if (record.best != record.filter) {
        line->append("; best ").append(Described(record, record.best));
      }
      if (options_.mismatch) line->append("; expected .").append(record.expected);
    }
    if (record.change == Change::APPEARED) *line += "; new";
    if (record.change == Change::CHANGED || record.change == Change::WENT) {
      *line += "; was " + FormatId(record.oldId);
      if (record.oldBestId != record.oldId) *line += ", best " + FormatId(record.oldBestId);
    }
  }

  // The answer, or every answer where they were asked for.
  void AppendAnswers(const Record& record, std::string* line) const {
    if (record.all.empty()) return AppendAnswer(record, record.filter, line);
    for (const Filter* filter : record.all) {
      if (filter != record.all.front()) *line += options_.shape == Shape::TEXT ? ", " : " ";
      AppendAnswer(record, filter, line);
    }
  }

  void AppendAnswer(const Record& record, const Filter* filter, std::string* line) const {
    if (options_.shape == Shape::LABEL) {
      *line += Label(record, filter);
    } else if (options_.shape == Shape::ID) {
      *line += FormatId(filter == nullptr ? 0 : filter->id);
    } else {
      *line += Described(record, filter);
    }
  }

  std::string Described(const Record& record, const Filter* filter) const {
    return FormatId(filter == nullptr ? 0 : filter->id) + " " +
           Colored(Name(record, filter), filter == nullptr ? "33" : "32");
  }

  std::string Colored(std::string_view text, const char* color = "31") const {
    if (!isColored_) return std::string(text);
    return "\x1B[" + std::string(color) + "m" + std::string(text) + "\x1B[0m";
  }

  const Options& options_;
  bool isTerminal_;
  bool isColored_;
};

std::vector<Field<Record>> FieldsFor(const Options& options) {
  std::vector<Field<Record>> fields;
  for (const Field<Record>& field : RecordFields()) {
    using enum Field<Record>::Use;
    if (field.use == TEMPLATE || (field.use == COMPARE && !options.compare) ||
        (field.use == RESTRICTED && AskedBy(options) == Asked())) {
      continue;
    }
    fields.push_back(field);
  }
  return fields;
}

class CsvWriter : public Writer {
 public:
  explicit CsvWriter(const Options& options)
      : fields_(FieldsFor(options)),
        isSafe_(options.csvSafe),
        end_(options.print0 ? std::string(1, '\0') : "\r\n") {}

  std::string Begin() const override { return CsvHeading<Record>(fields_) + end_; }
  std::string Format(const Record& record) const override {
    return CsvLine<Record>(fields_, record, isSafe_) + end_;
  }

 private:
  std::vector<Field<Record>> fields_;
  bool isSafe_;
  std::string end_;
};

// An array, or with --header an object around it.
class JsonArrayWriter : public Writer {
 public:
  explicit JsonArrayWriter(const Options& options) : fields_(FieldsFor(options)) {
    if (!options.header) return;
    before_ = "{\"typescout\":" + HeaderObject(options) + ",\n\"records\":";
    after_ = "}";
  }

  std::string Begin() const override { return before_ + "[\n"; }
  std::string Between() const override { return ",\n"; }
  std::string End() const override { return "\n]" + after_ + "\n"; }
  std::string Nothing() const override { return before_ + "[]" + after_ + "\n"; }
  std::string Format(const Record& record) const override {
    return JsonObject<Record>(fields_, record);
  }

 private:
  std::vector<Field<Record>> fields_;
  std::string before_;
  std::string after_;
};

class JsonLinesWriter : public Writer {
 public:
  explicit JsonLinesWriter(const Options& options)
      : fields_(FieldsFor(options)), end_(options.print0 ? '\0' : '\n') {
    if (options.header) head_ = "{\"typescout\":" + HeaderObject(options) + "}" + end_;
  }

  std::string Begin() const override { return head_; }
  std::string Format(const Record& record) const override {
    return JsonObject<Record>(fields_, record) + end_;
  }

 private:
  std::vector<Field<Record>> fields_;
  char end_;
  std::string head_;
};

// No output: the exit status is the answer.
class SilentWriter : public Writer {
 public:
  std::string Format(const Record&) const override { return {}; }
  bool NeedsStatus() const override { return false; }
};

std::string FilterTable() {
  std::string list =
      "row  id      label                    family    hidden by             name, MIME type, "
      "extensions\n";
  for (const Filter& filter : catalogue::Filters()) {
    const auto value = [&filter](std::string_view name) {
      const auto fields = FilterFields();
      const auto field =
          std::find_if(fields.begin(), fields.end(),
                       [name](const Field<Filter>& each) { return each.name == name; });
      return ToText(field->value(filter));
    };
    for (const auto& [name, width] : {std::pair<std::string_view, std::size_t>{"row", 5},
                                      {"id", 8},
                                      {"label", 25},
                                      {"family", 10},
                                      {"hidden_by", 22}}) {
      std::string cell = value(name);
      if (name == "hidden_by" && filter.evidence == catalogue::Evidence::NEVER) cell = "never";
      cell.resize(std::max(width, cell.size() + 2), ' ');
      list += cell;
    }
    list += filter.name;
    if (!filter.mime.empty()) list.append(", ").append(filter.mime);
    if (!filter.extensions.empty()) list.append(" (").append(filter.extensions).append(")");
    list += '\n';
  }
  return list;
}

}  // namespace

std::unique_ptr<Writer> MakeWriter(const Options& options, bool isTerminal, bool isColored) {
  if (options.summary) return std::make_unique<SilentWriter>();
  switch (options.shape) {
    case Shape::NOTHING:
      return std::make_unique<SilentWriter>();
    case Shape::JSON:
      return std::make_unique<JsonArrayWriter>(options);
    case Shape::JSON_LINES:
      return std::make_unique<JsonLinesWriter>(options);
    case Shape::CSV:
      return std::make_unique<CsvWriter>(options);
    default:
      return std::make_unique<TextWriter>(options, isTerminal, isColored);
  }
}

std::string HeaderObject(const Options& options) {
  const auto quoted = [](std::string_view text) {
    std::string json;
    AppendJsonString(text, &json);
    return json;
  };
  std::string head = "{\"version\":" + quoted(TYPESCOUT_VERSION_STRING) +
                     ",\"filters\":" + std::to_string(GetNumTypeScoutProcs());
  const Asked asked = AskedBy(options);
  if (!asked.candidates.empty()) {
    std::string list;
    for (const std::string& word : asked.candidates) {
      list += (list.empty() ? "" : ",") + quoted(word);
    }
    head += ",\"candidates\":[" + list + "]";
  }
  if (!asked.requested.empty()) head += ",\"requested\":" + quoted(asked.requested);
  if (options.all) head += ",\"all\":true";
  return head + "}";
}

std::string FilterList(Shape shape) {
  const std::span<const Field<Filter>> fields = FilterFields();
  std::string list = shape == Shape::JSON  ? "[\n"
                     : shape == Shape::CSV ? CsvHeading(fields) + "\r\n"
                                           : "";
  for (const Filter& filter : catalogue::Filters()) {
    switch (shape) {
      case Shape::JSON:
        list += JsonObject(fields, filter) +
                (&filter == &catalogue::Filters().back() ? "\n]\n" : ",\n");
        break;
      case Shape::JSON_LINES:
        list += JsonObject(fields, filter) + "\n";
        break;
      case Shape::CSV:
        list += CsvLine(fields, filter, false) + "\r\n";
        break;
      default:
        return FilterTable();
    }
  }
  return list;
}

}  // namespace typescout::cli
