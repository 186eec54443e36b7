// Asks the library about one file: gives the answer and the best description, or why there is
// neither.
#ifndef TYPESCOUT_PYTHON_ASK_H
#define TYPESCOUT_PYTHON_ASK_H

#include <string>
#include <string_view>

#include "catalogue/filters.h"
#include "catalogue/question.h"

namespace typescout::python {

using catalogue::Question;

struct Outcome {
  const catalogue::Filter* answer = nullptr;  // null: nothing recognised, or an error
  const catalogue::Filter* best = nullptr;  // as `answer`, or a row that describes the file better
  int error = 0;                            // an errno; 0: the file was read
  std::string reason;                       // not empty: says more than the errno does
};

// A path in the system's bytes, and in characters as the library takes it.
struct Path {
  std::string bytes;
  std::wstring wide;
};

// Asks about the file at `path`. Throws std::bad_alloc only. Safe on all threads.
Outcome AskAboutFile(const Path& path, const Question& question);

// The same about content, of which no more is copied than a scan may look at. `name` is the name of
// the file that it would be; only its extension counts.
Outcome AskAboutContent(std::string_view content, std::string_view name, const Question& question);

}  // namespace typescout::python

#endif  // TYPESCOUT_PYTHON_ASK_H
