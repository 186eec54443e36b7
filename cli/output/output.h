// Standard output, gathered into large writes, and messages on standard error.
#ifndef TYPESCOUT_CLI_OUTPUT_OUTPUT_H
#define TYPESCOUT_CLI_OUTPUT_OUTPUT_H

#include <string>
#include <string_view>

namespace typescout::cli {

class Output {
 public:
  void Append(std::string_view bytes);
  void Flush();

  // Why bytes were lost; 0 while none were. Nothing is written after that.
  int error() const { return error_; }

 private:
  std::string waiting_;
  int error_ = 0;
};

// A line on standard error: "typescout: " and the message, with its control characters escaped.
void Complain(std::string_view message);

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_OUTPUT_OUTPUT_H
