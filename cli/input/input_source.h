// Where inputs come from: the command line, lists of paths, folders that are walked. One at a time,
// so that memory does not grow with their number.
#ifndef TYPESCOUT_CLI_INPUT_INPUT_SOURCE_H
#define TYPESCOUT_CLI_INPUT_INPUT_SOURCE_H

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "cli/ask/examiner.h"
#include "cli/input/path_list.h"
#include "cli/options.h"

namespace typescout::cli {

class InputSource {
 public:
  // `options` outlives the source. `beforeWaiting` is called before a list is read that may keep us
  // waiting: what is known so far can be brought out.
  InputSource(const Options& options, std::function<void()> beforeWaiting);

  // False when there are no more, or the run was interrupted.
  bool Next(Input* input);

  // How many there will be, where that is known from the start.
  std::optional<std::uint64_t> Total() const;

  // A list that could not be read, as a message; empty when there was none since the last call.
  std::string TakeListError();

 private:
  // A folder that is being walked.
  struct Frame {
    std::string path;
    platform::FolderPtr folder;
    platform::Listing listing;
    std::size_t next = 0;
  };

  bool NextNamed(Input* input);
  bool NextWalked(Input* input);
  bool NextListed(std::string* path);
  // False when the input is a folder that has been entered instead.
  bool Resolve(bool followLink, Input* input);
  bool Enter(bool followLink, const platform::Status& status, Input* input);
  bool IsExcluded(const std::string& path, std::string_view name) const;

  const Options& options_;
  std::function<void()> beforeWaiting_;
  std::size_t nextPath_ = 0;
  std::size_t nextList_ = 0;
  std::optional<PathList> list_;
  std::string listError_;
  std::vector<Frame> frames_;
  std::uint64_t rootDevice_ = 0;
  std::set<std::pair<std::uint64_t, std::uint64_t>> entered_;
};

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_INPUT_INPUT_SOURCE_H
