#include "cli/output/fields.h"

#include <algorithm>
#include <array>

#include "cli/output/names.h"

namespace typescout::cli {
namespace {

std::string Text(std::string_view text) { return std::string(text); }

constexpr auto FIELDS = std::to_array<Field>({
    {"path", [](const Record& r) { return r.path; }},
    {"status", [](const Record& r) { return Text(StateLabel(r.state)); }},
    {"id",
     [](const Record& r) { return catalogue::FormatId(r.filter == nullptr ? 0 : r.filter->id); }},
    {"label", [](const Record& r) { return Text(Label(r)); }},
    {"name", [](const Record& r) { return Text(Name(r)); }},
    {"family",
     [](const Record& r) { return Text(r.filter ? catalogue::Family(r.filter->id) : ""); }},
    {"mime", [](const Record& r) { return MimeType(r); }},
    {"also",
     [](const Record& r) { return r.also ? catalogue::FormatId(r.also->id) : std::string(); }},
    {"all",
     [](const Record& r) {
       std::string ids;
       for (const Filter* filter : r.all)
         ids += (ids.empty() ? "" : " ") + catalogue::FormatId(filter->id);
       return ids;
     }},
    {"extension", [](const Record& r) { return catalogue::ExtensionOf(r.path); }},
    {"expected", [](const Record& r) { return r.expected; }},
    {"kind", [](const Record& r) { return Text(KindLabel(r.kind)); }},
    {"reason", [](const Record& r) { return r.reason; }},
});

}  // namespace

std::span<const Field> Fields() { return FIELDS; }

const Field* FindField(std::string_view name) {
  const auto found = std::find_if(FIELDS.begin(), FIELDS.end(),
                                  [name](const Field& field) { return field.name == name; });
  return found == FIELDS.end() ? nullptr : &*found;
}

}  // namespace typescout::cli
