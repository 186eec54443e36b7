#include "cli/ask/earlier_output.h"

#include <algorithm>
#include <tuple>

#include "cli/ask/filters.h"
#include "cli/escape.h"
#include "cli/platform/streams.h"
#include "cli/utf8.h"
#include "nlohmann/json.hpp"

namespace typescout::cli {
namespace {

using Json = nlohmann::json;

constexpr std::string_view PATH_KEY = "{\"path\":";
constexpr std::string_view HEADER_KEY = "{\"typescout\":";

// No record is longer.
constexpr std::size_t LONGEST_LINE = 1 << 20;

// What is around the records by --json.
constexpr std::string_view BRACKETS = "[]\r\n";

// Whether an output may begin like this: with a header or a record, by --json in an array. A run
// that was interrupted may have written only a part of it.
bool IsBeginning(std::string_view text) {
  if (text.starts_with('[')) {
    text.remove_prefix(std::min(text.find_first_not_of(BRACKETS), text.size()));
  }
  const auto fits = [text](std::string_view key) {
    const std::size_t length = std::min(key.size(), text.size());
    return key.substr(0, length) == text.substr(0, length);
  };
  return fits(PATH_KEY) || fits(HEADER_KEY);
}

std::uint64_t Hash(std::string_view text) { return std::hash<std::string_view>()(text); }

const Filter* FilterOf(const Json& json, const char* key) {
  const auto found = json.find(key);
  if (found == json.end() || !found->is_string()) return nullptr;
  return catalogue::FindFilter(FilterNamed(found->get_ref<const std::string&>()));
}

std::string TextOf(const Json& json, const char* key) {
  const auto found = json.find(key);
  return found != json.end() && found->is_string() ? found->get<std::string>() : std::string();
}

// Nothing when the line is no whole record.
std::optional<std::pair<Record, std::string>> Parse(const std::string& line) {
  const Json json = Json::parse(line, nullptr, false);
  if (!json.is_object()) return std::nullopt;
  Record record;
  const std::string bytes = TextOf(json, "path_bytes");
  record.path = bytes.empty() ? TextOf(json, "path") : FromBase64(bytes);
  const std::optional<State> state = StateOf(TextOf(json, "status"));
  if (!state) return std::nullopt;
  record.state = *state;
  record.kind = KindOf(TextOf(json, "kind"));
  record.reason = TextOf(json, "reason");
  if (const auto size = json.find("size"); size != json.end() && size->is_number_unsigned()) {
    record.size = size->get<std::uint64_t>();
  }
  record.asked.requested = TextOf(json, "requested");
  if (const auto words = json.find("candidates"); words != json.end() && words->is_array()) {
    for (const Json& word : *words) {
      if (word.is_string()) record.asked.candidates.push_back(word.get<std::string>());
    }
  }
  record.filter = FilterOf(json, "id");
  record.best = FilterOf(json, "best_id");
  if ((record.state == State::RECOGNISED) != (record.filter != nullptr && record.best != nullptr)) {
    return std::nullopt;
  }
  if (const auto all = json.find("all"); all != json.end() && all->is_array()) {
    for (const Json& each : *all) {
      if (const Filter* filter = FilterOf(each, "id")) record.all.push_back(filter);
    }
  }
  if (record.best != nullptr) {
    record.expected =
        catalogue::ExpectedExtension(*record.best, catalogue::ExtensionOf(record.path));
  }
  return std::pair(std::move(record), TextOf(json, "mtime"));
}

}  // namespace

EarlierOutput::EarlierOutput(const std::string& file) {
  handle_ = platform::OpenForReading(file, &error_);
  if (error_ != 0) return;
  std::string buffer;
  std::uint64_t offset = 0;  // of the buffer in the file
  bool hasStranger = false;
  for (bool isAtEnd = false; !isAtEnd && isOutput_ && error_ == 0;) {
    const std::size_t before = buffer.size();
    buffer.resize(before + LONGEST_LINE);
    const std::size_t count =
        platform::ReadAt(handle_, offset + before, buffer.data() + before, LONGEST_LINE, &error_);
    buffer.resize(before + count);
    isAtEnd = count == 0;
    if (offset == 0 && before == 0) isOutput_ = IsBeginning(buffer);
    std::size_t at = 0;
    for (std::size_t end; (end = buffer.find('\n', at)) != std::string::npos; at = end + 1) {
      const std::string_view line = std::string_view(buffer).substr(at, end - at);
      Index(line, offset + at);
      hasStranger |= !asked_ && header_.empty() && line.find_first_not_of(BRACKETS) != line.npos;
    }
    if (buffer.size() - at > LONGEST_LINE) isOutput_ = false;
    buffer.erase(0, at);
    offset += at;
  }
  Index(buffer, offset);
  if (!asked_ && header_.empty() && hasStranger) isOutput_ = false;
  places_.shrink_to_fit();
  std::sort(places_.begin(), places_.end(), [](const Place& a, const Place& b) {
    return std::tuple(a.hash, a.offset) < std::tuple(b.hash, b.offset);
  });
}

EarlierOutput::~EarlierOutput() {
  if (handle_ >= 0) platform::CloseHandle(handle_);
}

void EarlierOutput::Index(std::string_view line, std::uint64_t offset) {
  if (line.ends_with('\r')) line.remove_suffix(1);
  if (line.ends_with(',')) line.remove_suffix(1);
  if (line.starts_with(HEADER_KEY)) header_ = line.substr(HEADER_KEY.size());
  if (!line.starts_with(PATH_KEY) || !line.ends_with('}')) return;
  if (!asked_) {
    if (const auto parsed = Parse(std::string(line))) asked_ = parsed->first.asked;
  }
  const std::string_view rest = line.substr(PATH_KEY.size());
  std::size_t end = rest.find_first_of("\"\\", 1);
  while (end != std::string_view::npos && rest[end] == '\\')
    end = rest.find_first_of("\"\\", end + 2);
  if (end == std::string_view::npos) return;
  places_.push_back({.hash = Hash(rest.substr(0, end + 1)),
                     .offset = offset,
                     .length = static_cast<std::uint32_t>(line.size()),
                     .isMet = false});
}

std::string EarlierOutput::ReadLine(const Place& place) const {
  std::string line(place.length, '\0');
  int error = 0;
  line.resize(platform::ReadAt(handle_, place.offset, line.data(), line.size(), &error));
  return line;
}

std::vector<std::size_t> EarlierOutput::PlacesOf(std::string_view path) const {
  std::string written;
  AppendJsonString(path, &written);
  const std::uint64_t hash = Hash(written);
  std::vector<std::size_t> found;
  const auto begin =
      std::lower_bound(places_.begin(), places_.end(), hash,
                       [](const Place& place, std::uint64_t value) { return place.hash < value; });
  for (auto at = begin; at != places_.end() && at->hash == hash; ++at) {
    found.push_back(static_cast<std::size_t>(at - places_.begin()));
  }
  return found;
}

std::optional<Record> EarlierOutput::Find(std::string_view path, std::string_view modified) const {
  for (const std::size_t i : PlacesOf(path)) {
    auto parsed = Parse(ReadLine(places_[i]));
    if (parsed && parsed->first.path == path && (modified.empty() || parsed->second == modified)) {
      return std::move(parsed->first);
    }
  }
  return std::nullopt;
}

std::optional<Record> EarlierOutput::Meet(std::string_view path) {
  std::optional<Record> first;
  for (const std::size_t i : PlacesOf(path)) {
    auto parsed = Parse(ReadLine(places_[i]));
    if (!parsed || parsed->first.path != path) continue;
    const std::lock_guard<std::mutex> lock(mutex_);
    places_[i].isMet = true;
    if (!first) first = std::move(parsed->first);
  }
  return first;
}

void EarlierOutput::ForEachMissed(const std::function<void(Record)>& each) const {
  std::vector<Place> missed;
  std::copy_if(places_.begin(), places_.end(), std::back_inserter(missed),
               [](const Place& place) { return !place.isMet; });
  std::sort(missed.begin(), missed.end(),
            [](const Place& a, const Place& b) { return a.offset < b.offset; });
  for (const Place& place : missed) {
    if (auto parsed = Parse(ReadLine(place))) each(std::move(parsed->first));
  }
}

}  // namespace typescout::cli
