// Interrupts (Ctrl-C, a request to end, a terminal that goes away) and how the program ends.
#ifndef TYPESCOUT_CLI_PLATFORM_SIGNALS_H
#define TYPESCOUT_CLI_PLATFORM_SIGNALS_H

namespace typescout::cli::platform {

// From now on the first interrupt only sets a flag; one that comes half a second later or more ends
// the program at once. Programs such as timeout send the same signal twice in a row. An interrupt
// that the program was started to ignore stays ignored.
void CatchInterrupts();
bool IsInterrupted();

constexpr int INTERRUPT_PAUSE = 500;  // in milliseconds

// While one exists, threads are started that no interrupt is delivered to.
class WithoutInterrupts {
 public:
  WithoutInterrupts();
  ~WithoutInterrupts();
  WithoutInterrupts(const WithoutInterrupts&) = delete;
  WithoutInterrupts& operator=(const WithoutInterrupts&) = delete;
};

// These end the program without waiting for its threads: as the interrupt would have, as a write to
// a closed pipe would have, with a status. Temporary files (folders.h) are removed.
[[noreturn]] void EndInterrupted();
[[noreturn]] void EndClosedPipe();
[[noreturn]] void EndNow(int status);

}  // namespace typescout::cli::platform

#endif  // TYPESCOUT_CLI_PLATFORM_SIGNALS_H
