#include "cli/platform/signals.h"

#include <windows.h>

#include <atomic>

#include "cli/platform/temporary_file.h"

namespace typescout::cli::platform {
namespace {

std::atomic<bool> isInterrupted = false;
HANDLE mainThread = nullptr;

BOOL WINAPI OnInterrupt(DWORD) {
  if (isInterrupted.exchange(true)) return FALSE;
  CancelSynchronousIo(mainThread);
  return TRUE;
}

}  // namespace

void CatchInterrupts() {
  DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &mainThread, 0,
                  FALSE, DUPLICATE_SAME_ACCESS);
  SetConsoleCtrlHandler(OnInterrupt, TRUE);
}

bool IsInterrupted() { return isInterrupted; }

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
