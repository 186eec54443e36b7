// What the JavaScript side calls. A file lies in the in-memory file system of the WebAssembly
// module; a filter is a place in the list of filters.
#include <emscripten.h>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "catalogue/filters.h"
#include "catalogue/question.h"

namespace {

using typescout::catalogue::Filter;

// The drawing object, which has no row, comes behind the rows.
constexpr int DRAWING_OBJECT = 0x0706;

int PlaceOf(const Filter& filter) {
  const int row = typescout::catalogue::RowOf(filter);
  return row < 0 ? static_cast<int>(typescout::catalogue::Filters().size()) : row;
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
  const typescout::catalogue::Question question({rows, rows + count}, requested);
  const auto readBeginning = [path] {
    std::string beginning(typescout::catalogue::Question::BEGINNING, '\0');
    std::ifstream(path, std::ios::binary).read(beginning.data(), std::ssize(beginning));
    return beginning;
  };
  const auto [answer, best] =
      question.Ask(wide.c_str(), typescout::catalogue::ExtensionOf(name), readBeginning);
  return answer == nullptr ? -1 : PlaceOf(*answer) * 1'000 + PlaceOf(*best);
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
