#include "cli/ask/filters.h"

#include <algorithm>
#include <charconv>

#include "typescout/typescout.h"

namespace typescout::cli {

int FilterNamed(std::string_view word) {
  if (const Filter* filter = catalogue::FindFilter(word); filter != nullptr) return filter->id;
  const bool isHex = word.starts_with("0x") || word.starts_with("0X");
  // 0305 is ambiguous: it could be decimal or hexadecimal.
  if (!isHex && word.starts_with('0')) return 0;
  if (isHex) word.remove_prefix(2);
  int id = 0;
  const auto [end, error] =
      std::from_chars(word.data(), word.data() + word.size(), id, isHex ? 16 : 10);
  const bool isNumber = error == std::errc() && end == word.data() + word.size();
  return isNumber && CheckValidFilterID(id) != 0 ? id : 0;
}

std::vector<int> RowsNamed(std::string_view word) {
  std::vector<int> rows;
  for (const Filter& filter : catalogue::Filters()) {
    if (catalogue::Family(filter.id) == word) rows.push_back(RowOf(filter));
  }
  if (!rows.empty()) return rows;
  const int id = FilterNamed(word);
  if (id == 0) return {};
  const Filter* filter = catalogue::FindFilter(id);
  return {filter == nullptr ? 0 : std::max(RowOf(*filter), 0)};
}

}  // namespace typescout::cli
