#include "cli/platform/signals.h"

#include <atomic>

#include "cli/platform/temporary_file.h"
#include "cli/platform/windows/handles.h"

namespace typescout::cli::platform {
namespace {

// When the first interrupt came, in milliseconds; 0 while there was none.
std::atomic<std::uint64_t> interruptedAt = 0;
HANDLE mainThread = nullptr;

// Ends a write that nobody reads from for a second.
DWORD WINAPI WatchWrites(void*) {
  constexpr DWORD PATIENCE = 1'000;
  for (;;) {
    const std::uint64_t before = WriteSteps();
    Sleep(PATIENCE);
    if (before % 2 != 0 && WriteSteps() == before) CancelSynchronousIo(mainThread);
  }
}

BOOL WINAPI OnInterrupt(DWORD event) {
  const std::uint64_t now = GetTickCount64();
  std::uint64_t first = 0;
  if (interruptedAt.compare_exchange_strong(first, now)) {
    const HANDLE watcher = CreateThread(nullptr, 0, WatchWrites, nullptr, 0, nullptr);
    if (watcher != nullptr) ::CloseHandle(watcher);
  } else if (now >= first + INTERRUPT_PAUSE) {
    return FALSE;
  }
  // When the console closes or the user logs off, the system ends the program once this returns.
  if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) Sleep(INFINITE);
  return TRUE;
}

}  // namespace

void CatchInterrupts() {
  DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &mainThread, 0,
                  FALSE, DUPLICATE_SAME_ACCESS);
  SetConsoleCtrlHandler(OnInterrupt, TRUE);
}

bool IsInterrupted() { return interruptedAt != 0; }

WithoutInterrupts::WithoutInterrupts() = default;
WithoutInterrupts::~WithoutInterrupts() = default;

void EndInterrupted() { EndNow(130); }

void EndClosedPipe() { EndNow(141); }

void EndNow(int status) {
  RemoveTemporaryFile();
  TerminateProcess(GetCurrentProcess(), static_cast<UINT>(status));
  for (;;) Sleep(INFINITE);
}

}  // namespace typescout::cli::platform
