// Makes a record of an input: asks the library, and finds the reason when it answers 0.
#ifndef TYPESCOUT_CLI_ASK_EXAMINER_H
#define TYPESCOUT_CLI_ASK_EXAMINER_H

#include <vector>

#include "catalogue/question.h"
#include "cli/ask/earlier_output.h"
#include "cli/ask/record.h"
#include "cli/input/input.h"
#include "cli/options.h"

namespace typescout::cli {

Asked AskedBy(const Options& options);

// Examines one file after another: which rows are asked, in what order, and what is reported.
class Examiner {
 public:
  // `options` and `earlier` (which may be null) outlive it. `needsStatus`: records are to have size
  // and time. A file that `earlier` has with the same size and time is not examined again.
  Examiner(const Options& options, const EarlierOutput* earlier, bool needsStatus);

  // Safe to call from several threads. Throws nothing but std::bad_alloc.
  Record Examine(const Input& input) const;

 private:
  std::vector<const Filter*> AllAnswers(const wchar_t* path, const Filter& first) const;
  void ExamineFile(const platform::Place& place, Record* record) const;
  void ExamineContent(Record* record) const;
  bool CopyFromEarlier(Record* record) const;

  const Options& options_;
  const EarlierOutput* earlier_;
  bool needsStatus_;
  Asked asked_;
  catalogue::Question question_;
};

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_ASK_EXAMINER_H
