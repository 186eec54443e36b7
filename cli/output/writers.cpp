#include "cli/output/writers.h"

#include <algorithm>

#include "cli/output/fields.h"
#include "cli/output/json.h"
#include "cli/output/names.h"
#include "cli/output/template.h"

namespace typescout::cli {
namespace {

// Lines for people: path: identifier name.
class TextWriter : public Writer {
 public:
  TextWriter(const Options& options, bool isTerminal, bool isColored)
      : options_(options), isTerminal_(isTerminal), isColored_(isColored) {}

  std::string Format(const Record& record) const override {
    // The message on standard error has said it.
    if (CountedAs(record.state) == Count::UNREADABLE && options_.format.empty()) return {};
    std::string line;
    if (!options_.format.empty()) {
      line = FillTemplate(options_.format, record, isTerminal_);
    } else {
      if (!options_.brief) line = Shown(record.path) + ": ";
      line += What(record);
    }
    return line + (options_.print0 ? '\0' : '\n');
  }

 private:
  std::string Shown(const std::string& text) const {
    return isTerminal_ ? EscapeForTerminal(text) : text;
  }

  std::string Colored(const char* color, const std::string& text) const {
    return isColored_ ? "\x1B[" + std::string(color) + "m" + text + "\x1B[0m" : text;
  }

  std::string What(const Record& record) const {
    if (options_.mime) return MimeType(record);
    if (options_.id || options_.label) return OneWordEach(record);
    const char* color = record.filter != nullptr ? "32" : "33";
    if (record.filter == nullptr) {
      return catalogue::FormatId(0) + " " + Colored(color, std::string(Name(record)));
    }
    std::string text;
    if (record.all.empty()) {
      text = WithId(color, *record.filter);
      if (record.also != nullptr) {
        text += "; also " + WithId(color, *record.also);
        if (record.alsoFitsName) text += ", as its name says";
      }
    } else {
      for (const Filter* filter : record.all) {
        text += (text.empty() ? "" : ", ") + WithId(color, *filter);
      }
    }
    if (options_.mismatch) text += "; expected ." + record.expected;
    return text;
  }

  std::string WithId(const char* color, const Filter& filter) const {
    return catalogue::FormatId(filter.id) + " " + Colored(color, std::string(filter.name));
  }

  std::string OneWordEach(const Record& record) const {
    const auto word = [this](const Filter& filter) {
      return options_.id ? catalogue::FormatId(filter.id) : std::string(filter.label);
    };
    if (record.filter == nullptr)
      return options_.id ? catalogue::FormatId(0) : std::string(Label(record));
    if (record.all.empty()) return word(*record.filter);
    std::string words;
    for (const Filter* filter : record.all) words += (words.empty() ? "" : " ") + word(*filter);
    return words;
  }

  const Options& options_;
  bool isTerminal_;
  bool isColored_;
};

// RFC 4180; the bytes of names as they are.
class CsvWriter : public Writer {
 public:
  explicit CsvWriter(const Options& options)
      : end_(options.print0 ? std::string(1, '\0') : "\r\n") {}

  std::string Begin() const override {
    std::string line;
    for (const Field& field : Fields()) Append(std::string(field.name), &line);
    return line + end_;
  }

  std::string Format(const Record& record) const override {
    std::string line;
    for (const Field& field : Fields()) Append(field.value(record), &line);
    return line + end_;
  }

 private:
  static void Append(const std::string& value, std::string* line) {
    if (!line->empty()) *line += ',';
    if (!value.empty() && value.find_first_of("\",\r\n") == std::string::npos) {
      *line += value;
      return;
    }
    // An empty value is quoted too: a line that begins with nothing would be taken for shorter.
    *line += '"';
    for (const char c : value) *line += c == '"' ? "\"\"" : std::string(1, c);
    *line += '"';
  }

  std::string end_;
};

class JsonArrayWriter : public Writer {
 public:
  std::string Begin() const override { return "[\n"; }
  std::string Between() const override { return ",\n"; }
  std::string End() const override { return "\n]\n"; }
  std::string Format(const Record& record) const override { return JsonObject(record); }
};

class JsonLinesWriter : public Writer {
 public:
  explicit JsonLinesWriter(const Options& options) : end_(options.print0 ? '\0' : '\n') {}
  std::string Format(const Record& record) const override { return JsonObject(record) + end_; }

 private:
  char end_;
};

// The exit status says it all.
class SilentWriter : public Writer {
 public:
  std::string Format(const Record&) const override { return {}; }
};

}  // namespace

std::unique_ptr<Writer> MakeWriter(const Options& options, bool isTerminal, bool isColored) {
  if (options.check != 0) return std::make_unique<SilentWriter>();
  if (options.json) return std::make_unique<JsonArrayWriter>();
  if (options.jsonLines) return std::make_unique<JsonLinesWriter>(options);
  if (options.csv) return std::make_unique<CsvWriter>(options);
  return std::make_unique<TextWriter>(options, isTerminal, isColored);
}

namespace {

std::string HiddenBy(const Filter& filter) {
  if (filter.evidence == catalogue::Evidence::NEVER) return "never";
  std::string ids;
  for (const int id : filter.hiddenBy) {
    if (id != 0) ids += (ids.empty() ? "" : " ") + catalogue::FormatId(id);
  }
  return ids;
}

}  // namespace

std::string FilterList(bool asJson) {
  if (asJson) return JsonFilterList();
  const auto cell = [](std::string_view text, std::size_t width) {
    std::string padded(text);
    padded.resize(std::max(width, padded.size()), ' ');
    return padded + "  ";
  };
  std::string list =
      "row  id      label                    family    hidden by             name, MIME type, "
      "extensions\n";
  for (const Filter& filter : catalogue::Filters()) {
    list += cell(std::to_string(RowOf(filter)), 3) + cell(catalogue::FormatId(filter.id), 6) +
            cell(filter.label, 23) + cell(catalogue::Family(filter.id), 8) +
            cell(HiddenBy(filter), 20) + std::string(filter.name);
    if (!filter.mime.empty()) list += ", " + std::string(filter.mime);
    if (!filter.extensions.empty()) list += " (" + std::string(filter.extensions) + ")";
    list += '\n';
  }
  return list;
}

}  // namespace typescout::cli
