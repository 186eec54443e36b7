// One input in, one record out: asks the library, and finds out what its 0 means.
#ifndef TYPESCOUT_CLI_ASK_EXAMINER_H
#define TYPESCOUT_CLI_ASK_EXAMINER_H

#include <span>
#include <string_view>
#include <vector>

#include "cli/ask/earlier_output.h"
#include "cli/ask/record.h"
#include "cli/input/input.h"
#include "cli/options.h"

namespace typescout::cli {

// Which rows are asked, and in what order; what else is wanted of the answer.
class Examiner {
 public:
  // `options` and `earlier` (which may be null) outlive it. `needsStatus`: records are to have size
  // and time. A file that `earlier` has with the same size and time is not looked at again.
  Examiner(const Options& options, const EarlierOutput* earlier, bool needsStatus);

  // Safe to call from several threads. Throws nothing but std::bad_alloc.
  Record Examine(const Input& input) const;

 private:
  int Ask(const wchar_t* path, std::span<const int> rows) const;
  const Filter* FirstAnswer(const platform::Place& place, const wchar_t* path, bool mayBeText,
                            bool* isBest, Record* record) const;
  const Filter* Best(const wchar_t* path, const Filter& answer, std::string_view extension) const;
  std::vector<const Filter*> AllAnswers(const wchar_t* path, const Filter& first) const;
  void ExamineFile(const platform::Place& place, Record* record) const;
  void ExamineContent(Record* record) const;
  bool CopyFromEarlier(Record* record) const;

  const Options& options_;
  const EarlierOutput* earlier_;
  bool needsStatus_;
  int requested_ = 0;
  bool isPlainScan_ = true;        // what TypeScoutFile() answers
  std::vector<int> rows_;          // every row, or the candidates in the caller's order
  std::vector<int> rowsTextLast_;  // every row, those for any text at the end
};

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_ASK_EXAMINER_H
