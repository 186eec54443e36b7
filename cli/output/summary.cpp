#include "cli/output/summary.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

#include "cli/escape.h"

namespace typescout::cli {
namespace {

// In the largest unit of which there is one: 999 B, 1.5 kB, 12 MB.
std::string FormatBytes(std::uint64_t bytes) {
  constexpr auto UNITS = std::to_array<const char*>({"B", "kB", "MB", "GB", "TB", "PB", "EB"});
  double amount = static_cast<double>(bytes);
  std::size_t unit = 0;
  for (; amount >= 999.5 && unit + 1 < UNITS.size(); ++unit) amount /= 1000;
  std::array<char, 32> text;
  const int decimals = unit != 0 && amount < 9.95 ? 1 : 0;
  std::snprintf(text.data(), text.size(), "%.*f %s", decimals, amount, UNITS[unit]);
  return text.data();
}

std::string Padded(const std::string& text, std::size_t width) {
  return std::string(width - std::min(width, text.size()), ' ') + text;
}

}  // namespace

void Summary::Add(const Record& record) {
  Row& row = rows_[Label(record, record.best)];
  row.name = Name(record, record.best);
  ++row.count;
  row.bytes += record.size.value_or(0);
  row.mismatches += !record.expected.empty();
  unreadable_ += IsUnreadable(record);
}

Summary::Row Summary::Sums() const {
  Row sums;
  for (const auto& [label, row] : rows_) {
    sums.count += row.count;
    sums.bytes += row.bytes;
    sums.mismatches += row.mismatches;
  }
  return sums;
}

std::string Summary::AsText(std::size_t width) const {
  constexpr std::size_t COLUMN = 10;
  constexpr std::size_t SHARE = 7;
  using Entry = std::pair<std::string_view, Row>;
  std::vector<Entry> entries(rows_.begin(), rows_.end());
  std::stable_sort(entries.begin(), entries.end(),
                   [](const Entry& a, const Entry& b) { return a.second.count > b.second.count; });
  const Row sums = Sums();
  const auto line = [](const Row& row) {
    return Padded(std::to_string(row.count), COLUMN) + Padded(FormatBytes(row.bytes), COLUMN) +
           Padded(row.mismatches == 0 ? "" : std::to_string(row.mismatches), COLUMN + 2);
  };
  std::size_t nameWidth = 0;
  for (const Entry& entry : entries) nameWidth = std::max(nameWidth, entry.second.name.size());
  const std::size_t used = 3 * COLUMN + 2 + SHARE + 2 + nameWidth + 2;
  const std::size_t barWidth = width > used + 10 ? width - used : 10;

  std::string text = Padded("count", COLUMN) + Padded("bytes", COLUMN) +
                     Padded("mismatches", COLUMN + 2) + "  share\n";
  for (const auto& [label, row] : entries) {
    const std::uint64_t perMille = (row.count * 1000 + sums.count / 2) / sums.count;
    const auto length =
        static_cast<std::size_t>((row.count * barWidth + sums.count - 1) / sums.count);
    std::string name(row.name);
    name.resize(nameWidth, ' ');
    text +=
        line(row) +
        Padded(std::to_string(perMille / 10) + "." + std::to_string(perMille % 10) + "%", SHARE) +
        "  " + name + "  " + std::string(length, '#') + "\n";
  }
  return text + line(sums) + "  all; " + std::to_string(unreadable_) + " unreadable\n";
}

std::string Summary::AsJson() const {
  const auto numbers = [](const Row& row) {
    return "\"count\":" + std::to_string(row.count) + ",\"bytes\":" + std::to_string(row.bytes) +
           ",\"mismatches\":" + std::to_string(row.mismatches);
  };
  std::string json =
      "{" + numbers(Sums()) + ",\"unreadable\":" + std::to_string(unreadable_) + ",\"types\":{";
  bool isFirst = true;
  for (const auto& [label, row] : rows_) {
    json += isFirst ? "\n" : ",\n";
    isFirst = false;
    AppendJsonString(label, &json);
    json += ":{\"name\":";
    AppendJsonString(row.name, &json);
    json += "," + numbers(row) + "}";
  }
  return json + "\n}}\n";
}

}  // namespace typescout::cli
