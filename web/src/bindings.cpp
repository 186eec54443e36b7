// What the JavaScript side calls. A file lies in the in-memory file system of the WebAssembly
// module; a filter is a place in the list of filters.
#include <emscripten.h>

#include <string>
#include <vector>

#include "catalogue/filters.h"
#include "typescout/typescout.h"

namespace {

using typescout::catalogue::Filter;

// The drawing object, which has no row, comes behind the rows.
constexpr int DRAWING_OBJECT = 0x0706;

int PlaceOf(const Filter& filter) {
  const int row = typescout::catalogue::RowOf(filter);
  return row < 0 ? static_cast<int>(typescout::catalogue::Filters().size()) : row;
}

int AskRows(const std::wstring& path, std::vector<int> rows, int requested) {
  std::wstring writable = path;
  return CheckFiltersFromList(writable.data(), rows.data(), static_cast<int>(rows.size()), 0,
                              nullptr, requested);
}

}  // namespace

extern "C" {

// One filter a line, its fields separated by tabs: identifier, label, name, MIME type, extensions
// (separated by spaces), family, 1 when no file is ever reported as it.
EMSCRIPTEN_KEEPALIVE const char* ListFilters() {
  static const std::string list = [] {
    std::string lines;
    const auto add = [&lines](const Filter& f) {
      const bool isNever = f.evidence == typescout::catalogue::Evidence::NEVER;
      lines += std::to_string(f.id);
      for (const std::string_view field :
           {f.label, f.name, f.mime, f.extensions, typescout::catalogue::Family(f.id),
            std::string_view(isNever ? "1" : "0")}) {
        lines += '\t';
        lines += field;
      }
      lines += '\n';
    };
    for (const Filter& filter : typescout::catalogue::Filters()) add(filter);
    add(*typescout::catalogue::FindFilter(DRAWING_OBJECT));
    return lines;
  }();
  return list.c_str();
}

// Asks `count` rows about the file at `path` (ASCII), all rows when `count` is 0. `name` (UTF-8) is
// what the user calls it. Answers -1 for a file that nothing recognises, -2 for one that became
// shorter, else the place of the answer times 1,000 and the place of the best description.
EMSCRIPTEN_KEEPALIVE int Identify(const char* path, const char* name, const int* rows, int count,
                                  int requested) try {
  const std::string narrow = path;
  const std::wstring wide(narrow.begin(), narrow.end());
  std::vector<int> asked(rows, rows + count);
  if (asked.empty() && requested != 0) {
    for (const Filter& filter : typescout::catalogue::Filters()) asked.push_back(PlaceOf(filter));
  }
  const int id = asked.empty() ? TypeScoutFile(wide.c_str()) : AskRows(wide, asked, requested);
  if (id == 0) return -1;
  const Filter& answer = *typescout::catalogue::FindFilter(id);
  const std::vector<int> better = typescout::catalogue::RowsThatDescribeBetter(
      answer, typescout::catalogue::ExtensionOf(name), asked);
  const int best = better.empty() ? 0 : AskRows(wide, better, requested);
  const Filter& described = best == 0 ? answer : *typescout::catalogue::FindFilter(best);
  return PlaceOf(answer) * 1'000 + PlaceOf(described);
} catch (int) {
  return -2;
}

// The extension that a file described best by the filter at `place` should have, when that of
// `name` (UTF-8) does not fit; empty otherwise.
EMSCRIPTEN_KEEPALIVE const char* ExpectedExtension(int place, const char* name) {
  static std::string expected;
  const auto filters = typescout::catalogue::Filters();
  const auto row = static_cast<std::size_t>(place);
  const Filter& best =
      row < filters.size() ? filters[row] : *typescout::catalogue::FindFilter(DRAWING_OBJECT);
  expected = typescout::catalogue::ExpectedExtension(best, typescout::catalogue::ExtensionOf(name));
  return expected.c_str();
}

}  // extern "C"
