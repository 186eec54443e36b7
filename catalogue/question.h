// One question about many files: which filter accepts each, and which describes it best. Calls the
// library, which whoever uses this has to link.
#ifndef TYPESCOUT_CATALOGUE_QUESTION_H
#define TYPESCOUT_CATALOGUE_QUESTION_H

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/filters.h"

namespace typescout::catalogue {

// Both are null when no row accepts the file.
struct Identified {
  const Filter* answer = nullptr;
  const Filter* best = nullptr;  // `answer`, or a row that describes the file better
};

class Question {
 public:
  // How many of a file's first bytes ReadBeginning has to give.
  static constexpr std::size_t BEGINNING = 8;

  // Gives the file's first bytes, BEGINNING of them or as many as there are.
  using ReadBeginning = std::function<std::string()>;

  // `rows`: registry indices in the order in which they are asked; empty: a full scan.
  // `requested`: the filter that the user has chosen, or 0.
  explicit Question(std::vector<int> rows = {}, int requested = 0);

  // `path` is as the library takes it, `extension` as ExtensionOf() gives it. When no row accepts
  // the file, `readBeginning` is called before this returns: the caller learns from its own look
  // whether the file can be read at all. Throws what the library and `readBeginning` throw. Safe
  // on all threads.
  Identified Ask(const wchar_t* path, std::string_view extension,
                 const ReadBeginning& readBeginning) const;

  // The first of these rows that accepts the file; null when none does.
  const Filter* AskRows(const wchar_t* path, std::span<const int> rows) const;

  // All rows that are asked, in their order. Not empty.
  std::span<const int> rows() const { return rows_; }

 private:
  int requested_;
  bool isFullScan_;
  std::vector<int> rows_;
  std::vector<int> rowsTextLast_;  // of a full scan: the rows for any text are nearly last
};

}  // namespace typescout::catalogue

#endif  // TYPESCOUT_CATALOGUE_QUESTION_H
