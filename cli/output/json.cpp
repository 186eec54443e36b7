#include "cli/output/json.h"

#include "cli/output/names.h"
#include "nlohmann/json.hpp"

namespace typescout::cli {
namespace {

using Json = nlohmann::ordered_json;

std::string Dump(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Json Words(std::string_view words) {
  Json list = Json::array();
  while (!words.empty()) {
    const std::size_t end = std::min(words.find(' '), words.size());
    list.push_back(std::string(words.substr(0, end)));
    words.remove_prefix(std::min(end + 1, words.size()));
  }
  return list;
}

// `key` only where there is something to say.
void Put(const char* key, std::string_view value, Json* json) {
  if (!value.empty()) (*json)[key] = std::string(value);
}

Json Describe(const Filter& filter) {
  Json json = {
      {"id", catalogue::FormatId(filter.id)}, {"label", filter.label}, {"name", filter.name}};
  Put("family", catalogue::Family(filter.id), &json);
  Put("mime", filter.mime, &json);
  return json;
}

}  // namespace

std::string JsonObject(const Record& record) {
  Json json = {{"path", record.path}};
  if (!IsValidUtf8(record.path)) json["path_bytes"] = Base64(record.path);
  json["status"] = StateLabel(record.state);
  json["id"] = catalogue::FormatId(record.filter == nullptr ? 0 : record.filter->id);
  json["label"] = Label(record);
  json["name"] = Name(record);
  if (record.filter != nullptr) Put("family", catalogue::Family(record.filter->id), &json);
  json["mime"] = MimeType(record);
  if (record.also != nullptr) {
    json["also"] = Describe(*record.also);
    json["also"]["fits_name"] = record.alsoFitsName;
  }
  if (!record.all.empty()) {
    json["all"] = Json::array();
    for (const Filter* filter : record.all) json["all"].push_back(Describe(*filter));
  }
  if (record.filter != nullptr) json["mismatch"] = record.isMismatch;
  Put("expected", record.expected, &json);
  if (record.state == State::NOT_EXAMINED) json["kind"] = KindLabel(record.kind);
  Put("reason", record.reason, &json);
  return Dump(json);
}

std::string JsonFilterList() {
  std::string list = "[\n";
  for (const Filter& filter : catalogue::Filters()) {
    Json json = {{"row", RowOf(filter)}};
    json.update(Describe(filter));
    json["extensions"] = Words(filter.extensions);
    json["never_reported"] = filter.evidence == catalogue::Evidence::NEVER;
    json["hidden_by"] = Json::array();
    for (const int id : filter.hiddenBy) {
      if (id != 0) json["hidden_by"].push_back(catalogue::FormatId(id));
    }
    list += Dump(json) + (&filter == &catalogue::Filters().back() ? "\n" : ",\n");
  }
  return list + "]\n";
}

}  // namespace typescout::cli
