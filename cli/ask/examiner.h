// One input in, one record out: asks the library, and finds out what its 0 means.
#ifndef TYPESCOUT_CLI_ASK_EXAMINER_H
#define TYPESCOUT_CLI_ASK_EXAMINER_H

#include <string>
#include <vector>

#include "cli/ask/record.h"
#include "cli/options.h"
#include "typescout/typescout.h"

namespace typescout::cli {

struct Input {
  std::string path;  // as it is shown
  platform::Place place;
  platform::Kind kind = platform::Kind::FILE;
  // Not empty: why there is nothing to examine.
  std::string reason;
  // Content from standard input in place of a file, at most HEAD_SIZE bytes of it.
  bool isContent = false;
  std::string content;
};

// The library never looks at more of a buffer that comes from us than of a file.
inline constexpr std::size_t HEAD_SIZE = TYPESCOUT_HEAD_CAPACITY;

// Which rows are asked, and in what order; what else is wanted of the answer.
class Examiner {
 public:
  explicit Examiner(const Options& options);

  // Safe to call from several threads. Throws nothing.
  Record Examine(const Input& input) const;

 private:
  struct Subject;

  int Ask(const Subject& subject, const std::vector<int>& rows) const;
  int FirstAnswer(const Subject& subject) const;
  std::vector<const Filter*> AllAnswers(const Subject& subject, const Filter& first) const;
  void CompareWithName(const Subject& subject, Record* record) const;
  void ExamineContent(const Input& input, Record* record) const;
  void FindOutWhy(const Input& input, Record* record) const;

  const Options& options_;
  std::vector<int> rows_;  // every row, or the candidates in the caller's order
};

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_ASK_EXAMINER_H
