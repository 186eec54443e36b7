#include "cli/output/output.h"

#include "cli/output/names.h"
#include "cli/platform/platform.h"

namespace typescout::cli {

void Output::Append(std::string_view bytes) {
  constexpr std::size_t ENOUGH = 65'536;
  waiting_ += bytes;
  if (waiting_.size() >= ENOUGH) Flush();
}

void Output::Flush() {
  if (error_ == 0) error_ = platform::WriteAll(platform::Stream::OUTPUT, waiting_);
  waiting_.clear();
}

void Complain(std::string_view message) {
  static const bool isTerminal = platform::IsTerminal(platform::Stream::MESSAGES);
  const std::string shown = isTerminal ? EscapeForTerminal(message) : std::string(message);
  platform::WriteAll(platform::Stream::MESSAGES, "typescout: " + shown + "\n");
}

}  // namespace typescout::cli
