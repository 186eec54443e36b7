#include "cli/output/progress.h"

#include <cmath>
#include <string>

#include "cli/platform/streams.h"

namespace typescout::cli {

Progress::Progress(bool isShown, std::optional<std::uint64_t> total)
    : isShown_(isShown), total_(total) {}

void Progress::Update(std::uint64_t done) {
  constexpr std::chrono::milliseconds PAUSE(200);
  if (!isShown_) return;
  const Clock::time_point now = Clock::now();
  if (now - lastDrawn_ < PAUSE) return;
  lastDrawn_ = now;
  const double seconds = std::chrono::duration<double>(now - start_).count();
  const double rate = static_cast<double>(done) / seconds;
  std::string line = "\r\x1B[K" + std::to_string(done);
  if (total_) line += " of " + std::to_string(*total_);
  line += " inputs, " + std::to_string(static_cast<std::uint64_t>(rate)) + "/s";
  if (total_ && rate > 0) {
    const double left = static_cast<double>(*total_ - done) / rate;
    line += ", " + std::to_string(std::llround(left)) + " s left";
  }
  platform::WriteAll(platform::Stream::MESSAGES, line);
  isDrawn_ = true;
}

void Progress::Clear() {
  if (!isDrawn_) return;
  platform::WriteAll(platform::Stream::MESSAGES, "\r\x1B[K");
  isDrawn_ = false;
}

}  // namespace typescout::cli
