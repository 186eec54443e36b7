#include "cli/platform/signals.h"

#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <cstdint>
#include <ctime>

#include "cli/platform/temporary_file.h"

namespace typescout::cli::platform {
namespace {

constexpr std::array<int, 3> INTERRUPTS = {SIGINT, SIGTERM, SIGHUP};

// The signal; 0 while there was none.
std::atomic<int> interruptedBy = 0;
std::atomic<std::int64_t> interruptedAt = 0;
// As a signal handler needs it.
static_assert(std::atomic<int>::is_always_lock_free &&
              std::atomic<std::int64_t>::is_always_lock_free);

std::int64_t Milliseconds() {
  timespec now = {};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return std::int64_t{now.tv_sec} * 1'000 + now.tv_nsec / 1'000'000;
}

void OnInterrupt(int signal) {
  if (interruptedBy == 0) {
    interruptedAt = Milliseconds();
    interruptedBy = signal;
  } else if (Milliseconds() - interruptedAt >= INTERRUPT_PAUSE) {
    // Ends the program when this function returns.
    std::signal(signal, SIG_DFL);
    raise(signal);
  }
}

void ChangeMask(int how) {
  sigset_t set;
  sigemptyset(&set);
  for (const int signal : INTERRUPTS) sigaddset(&set, signal);
  pthread_sigmask(how, &set, nullptr);
}

[[noreturn]] void EndBySignal(int signal) {
  RemoveTemporaryFile();
  std::signal(signal, SIG_DFL);
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, signal);
  pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
  raise(signal);
  _exit(128 + signal);
}

}  // namespace

void CatchInterrupts() {
  for (const int signal : INTERRUPTS) {
    struct sigaction action = {};
    if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) continue;
    action.sa_handler = OnInterrupt;
    // Without SA_RESTART, so that a write that waits for its reader ends.
    action.sa_flags = 0;
    sigemptyset(&action.sa_mask);
    // One at a time.
    for (const int other : INTERRUPTS) sigaddset(&action.sa_mask, other);
    sigaction(signal, &action, nullptr);
  }
}

bool IsInterrupted() { return interruptedBy != 0; }

WithoutInterrupts::WithoutInterrupts() { ChangeMask(SIG_BLOCK); }
WithoutInterrupts::~WithoutInterrupts() { ChangeMask(SIG_UNBLOCK); }

void EndInterrupted() { EndBySignal(interruptedBy.load()); }

void EndClosedPipe() { EndBySignal(SIGPIPE); }

void EndNow(int status) {
  RemoveTemporaryFile();
  _exit(status);
}

}  // namespace typescout::cli::platform
