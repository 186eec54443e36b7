#include "catalogue/question.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "catalogue/content.h"
#include "typescout/typescout.h"

namespace typescout::catalogue {
namespace {

// Asks a module, which has to be looked for. No raw picture is text.
constexpr int CAMERA_RAW = 0x0337;

}  // namespace

Question::Question(std::vector<int> rows, int requested)
    : requested_(requested), isFullScan_(rows.empty() && requested == 0), rows_(std::move(rows)) {
  if (!rows_.empty()) return;
  rows_.resize(Filters().size());
  std::iota(rows_.begin(), rows_.end(), 0);
  rowsTextLast_ = rows_;
  const auto order = [](int row) {
    const Filter& filter = Filters()[static_cast<std::size_t>(row)];
    return filter.id == CAMERA_RAW ? 2 : filter.evidence == Evidence::TEXT ? 1 : 0;
  };
  std::stable_sort(rowsTextLast_.begin(), rowsTextLast_.end(),
                   [&order](int a, int b) { return order(a) < order(b); });
}

const Filter* Question::AskRows(const wchar_t* path, std::span<const int> rows) const {
  // The function does not write through these pointers.
  return FindFilter(CheckFiltersFromList(const_cast<wchar_t*>(path), const_cast<int*>(rows.data()),
                                         static_cast<int>(rows.size()), 0, nullptr, requested_));
}

Identified Question::Ask(const wchar_t* path, std::string_view extension,
                         const ReadBeginning& readBeginning) const {
  const auto scan = [this, path] {
    return isFullScan_ ? FindFilter(TypeScoutFile(path)) : AskRows(path, rows_);
  };
  // Most files are text, and for text the rows behind those for any text have to be asked too. With
  // the text rows at the end of the list, one call answers both. Such a call does not check the
  // class of a compound document, as TypeScoutFile() does, so it is used only where there is none.
  const bool isTextLast = isFullScan_ && MayNameText(extension);
  const Filter* answer = isTextLast ? AskRows(path, rowsTextLast_) : scan();
  if (answer == nullptr) {
    const bool isCompound = IsCompoundDocument(readBeginning());
    if (!isTextLast || !isCompound) return {};
  }
  if (isTextLast) {
    if (answer != nullptr && answer->evidence == Evidence::TEXT) return {answer, answer};
    answer = scan();
    if (answer == nullptr) return {};
  }
  const std::vector<int> better = RowsThatDescribeBetter(*answer, extension, rows_);
  const Filter* best = better.empty() ? nullptr : AskRows(path, better);
  return {answer, best == nullptr ? answer : best};
}

}  // namespace typescout::catalogue
