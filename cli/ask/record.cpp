#include "cli/ask/record.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>

namespace typescout::cli {

using platform::Kind;

namespace {

constexpr auto STATES = std::to_array<std::string_view>(
    {"recognised", "unknown", "empty", "unreadable", "cut-short", "not-examined"});

struct KindWords {
  std::string_view label;
  std::string_view name;
  // As the freedesktop.org shared MIME-info specification, section 2.12, has it.
  std::string_view mime;
};

constexpr auto KINDS = std::to_array<KindWords>({
    {"file", "file", "application/octet-stream"},
    {"folder", "folder", "inode/directory"},
    {"fifo", "FIFO", "inode/fifo"},
    {"socket", "socket", "inode/socket"},
    {"character-device", "character device", "inode/chardevice"},
    {"block-device", "block device", "inode/blockdevice"},
    {"link", "symbolic link", "inode/symlink"},
    {"other", "not a regular file", "application/octet-stream"},
});

const KindWords& WordsOf(Kind kind) {
  return KINDS[std::min(static_cast<std::size_t>(kind), KINDS.size() - 1)];
}

}  // namespace

std::string_view StateLabel(State state) { return STATES[static_cast<std::size_t>(state)]; }

std::optional<State> StateOf(std::string_view label) {
  const auto found = std::find(STATES.begin(), STATES.end(), label);
  if (found == STATES.end()) return std::nullopt;
  return static_cast<State>(found - STATES.begin());
}

std::string_view KindLabel(Kind kind) { return WordsOf(kind).label; }

Kind KindOf(std::string_view label) {
  const auto found = std::find_if(KINDS.begin(), KINDS.end(),
                                  [label](const KindWords& words) { return words.label == label; });
  return static_cast<Kind>(std::min<std::ptrdiff_t>(found - KINDS.begin(), KINDS.size() - 1));
}

std::vector<std::string_view> StateLabels() {
  std::vector<std::string_view> labels(STATES.begin(), STATES.end());
  for (std::size_t i = 1; i < KINDS.size(); ++i) labels.push_back(KINDS[i].label);
  return labels;
}

std::string_view Label(const Record& record, const Filter* filter) {
  if (filter != nullptr) return filter->label;
  return record.state == State::NOT_EXAMINED ? KindLabel(record.kind) : StateLabel(record.state);
}

std::string_view Name(const Record& record, const Filter* filter) {
  if (filter != nullptr) return filter->name;
  return record.state == State::NOT_EXAMINED ? WordsOf(record.kind).name : StateLabel(record.state);
}

std::string_view MimeType(const Record& record, const Filter* filter) {
  if (filter != nullptr && !filter->mime.empty()) return filter->mime;
  return WordsOf(record.state == State::NOT_EXAMINED ? record.kind : Kind::FILE).mime;
}

bool IsOneOf(const Record& record, const std::vector<std::string>& words) {
  const auto isNamed = [&record](std::string_view word, const Filter* filter) {
    return word == Label(record, filter) ||
           (filter != nullptr && word == catalogue::Family(filter->id));
  };
  return std::any_of(words.begin(), words.end(), [&](std::string_view word) {
    return word == StateLabel(record.state) || isNamed(word, record.filter) ||
           isNamed(word, record.best);
  });
}

bool IsUnreadable(const Record& record) {
  return record.state == State::UNREADABLE || record.state == State::CUT_SHORT;
}

std::string FormatTime(const platform::Time& time) {
  using namespace std::chrono;
  constexpr std::int64_t LONGEST = std::int64_t{32'000} * 31'556'952;  // seconds in so many years
  const sys_seconds moment{seconds(std::clamp(time.seconds, -LONGEST, LONGEST))};
  const sys_days day = floor<days>(moment);
  const year_month_day date(day);
  const hh_mm_ss clock(moment - day);
  std::array<char, 64> text;
  std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d.%09dZ",
                static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                static_cast<unsigned>(date.day()), static_cast<int>(clock.hours().count()),
                static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()), static_cast<int>(time.nanoseconds));
  return text.data();
}

}  // namespace typescout::cli
