// An input, which becomes one record of the output.
#ifndef TYPESCOUT_CLI_INPUT_INPUT_H
#define TYPESCOUT_CLI_INPUT_INPUT_H

#include <optional>
#include <string>

#include "cli/platform/folders.h"

namespace typescout::cli {

struct Input {
  enum class Type {
    PATH,
    CONTENT,     // standard input
    LIST_ERROR,  // a list that could not be read further: `error` says why; no record
    BAD_LIST,    // an invalid list: ends the run as a wrong command line does
  };

  Type type = Type::PATH;
  std::string path;  // as it is shown
  // How the system reaches it where `path` is too long for the library.
  std::optional<platform::Place> reach;
  platform::Kind kind = platform::Kind::FILE;
  std::optional<platform::Status> status;  // when it is known already
  // Not empty: why there is nothing to examine.
  std::string error;

  platform::Place Place() const { return reach ? *reach : platform::Place{nullptr, path}; }
};

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_INPUT_INPUT_H
