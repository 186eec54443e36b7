// Where inputs come from: the command line, lists of paths, folders that are walked. One at a time,
// so that memory does not grow with their number.
#ifndef TYPESCOUT_CLI_INPUT_INPUT_SOURCE_H
#define TYPESCOUT_CLI_INPUT_INPUT_SOURCE_H

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "cli/input/glob.h"
#include "cli/input/input.h"
#include "cli/input/path_list.h"
#include "cli/options.h"

namespace typescout::cli {

class InputSource {
 public:
  // `options` outlives the source.
  explicit InputSource(const Options& options);

  // False when there are no more, or the run was interrupted.
  bool Next(Input* input);

  // Whether a folder is being walked: the next input does not depend on who writes a list.
  bool IsWalking() const { return !frames_.empty(); }

  // How many there will be, where that is known from the start.
  std::optional<std::uint64_t> Total() const;

 private:
  // A folder that is being walked.
  struct Frame {
    std::string path;
    platform::FolderPtr folder;  // null unless `isLong` and among the innermost ones
    bool isLong = false;         // what is in it may be too long for the library
    platform::Listing listing;
    std::size_t next = 0;
  };

  void NextPath(std::string path, Input* input);
  bool NextListed(Input* input);
  // Asks what kind the input is; false when that fails.
  bool Resolve(bool followLink, Input* input);
  // These are false when there is no input: a folder was entered or left, or something is
  // excluded.
  bool NextWalked(Input* input);
  bool Enter(bool followLink, Input* input);

  const Options& options_;
  std::vector<Glob> excludes_;
  std::vector<std::string> paths_;  // those of the command line, wildcards expanded
  std::size_t nextPath_ = 0;
  std::size_t nextList_ = 0;
  std::optional<PathList> list_;
  std::vector<Frame> frames_;
  std::uint64_t rootDevice_ = 0;
  std::set<std::pair<std::uint64_t, std::uint64_t>> entered_;
};

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_INPUT_INPUT_SOURCE_H
