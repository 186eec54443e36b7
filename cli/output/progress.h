// The line on standard error that shows the progress of a run.
#ifndef TYPESCOUT_CLI_OUTPUT_PROGRESS_H
#define TYPESCOUT_CLI_OUTPUT_PROGRESS_H

#include <chrono>
#include <cstdint>
#include <optional>

namespace typescout::cli {

class Progress {
 public:
  // Without `isShown` it does nothing.
  Progress(bool isShown, std::optional<std::uint64_t> total);

  // Draws the line anew, at most a few times a second.
  void Update(std::uint64_t done);

  // Takes the line away; the next Update() brings it back.
  void Clear();

 private:
  using Clock = std::chrono::steady_clock;

  bool isShown_;
  bool isDrawn_ = false;
  std::optional<std::uint64_t> total_;
  Clock::time_point start_ = Clock::now();
  Clock::time_point lastDrawn_ = start_;
};

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_OUTPUT_PROGRESS_H
