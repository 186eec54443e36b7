#include "cli/output/output.h"

#include "cli/escape.h"
#include "cli/platform/streams.h"

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
  platform::WriteAll(platform::Stream::MESSAGES, "typescout: " + EscapeControls(message) + "\n");
}

}  // namespace typescout::cli
