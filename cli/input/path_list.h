// A file with a list of paths, read piece by piece.
#ifndef TYPESCOUT_CLI_INPUT_PATH_LIST_H
#define TYPESCOUT_CLI_INPUT_PATH_LIST_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace typescout::cli {

class PathList {
 public:
  // "-" is standard input. `terminator` ends a path; empty ones are passed over.
  PathList(const std::string& file, char terminator);
  ~PathList();
  PathList(const PathList&) = delete;
  PathList& operator=(const PathList&) = delete;

  // False at the end, on an error and when the run was interrupted. `beforeWaiting` is called when
  // the next path has not been written yet.
  bool Next(const std::function<void()>& beforeWaiting, std::string* path);

  // Why it could not be read (on); 0 when it could.
  int error() const { return error_; }

 private:
  bool Fill(const std::function<void()>& beforeWaiting);

  bool isOwned_ = false;
  std::intptr_t handle_ = -1;
  char terminator_;
  bool atEnd_ = false;
  int error_ = 0;
  std::string buffer_;
  std::size_t at_ = 0;
};

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_INPUT_PATH_LIST_H
