#include "cli/platform/streams.h"

#include <algorithm>
#include <array>
#include <atomic>

#include "cli/platform/signals.h"
#include "cli/platform/windows/handles.h"
#include "cli/utf8.h"

namespace typescout::cli::platform {
namespace {

std::atomic<std::uint64_t> writeSteps = 0;

HANDLE StandardHandle(Stream stream) {
  constexpr std::array<DWORD, 3> NUMBERS = {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE};
  return GetStdHandle(NUMBERS[static_cast<std::size_t>(stream)]);
}

int WriteToConsole(HANDLE console, std::string_view bytes) {
  const std::wstring wide = ToWide(bytes);
  DWORD written = 0;
  for (std::size_t at = 0; at < wide.size(); at += written) {
    constexpr std::size_t MOST = 8'192;
    const DWORD count = static_cast<DWORD>(std::min(MOST, wide.size() - at));
    if (WriteConsoleW(console, wide.data() + at, count, &written, nullptr) == 0) return LastError();
  }
  return 0;
}

}  // namespace

std::uint64_t WriteSteps() { return writeSteps; }

void OccupyStandardStreams() {}  // files that are opened later do not take their places here

bool IsTerminal(Stream stream) {
  const HANDLE handle = StandardHandle(stream);
  DWORD mode = 0;
  if (GetConsoleMode(handle, &mode) == 0) return false;
  if (stream != Stream::INPUT) {
    SetConsoleMode(handle, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
  }
  return true;
}

bool IsFile(Stream stream) {
  const HANDLE handle = StandardHandle(stream);
  const DWORD type = GetFileType(handle);
  return type == FILE_TYPE_DISK || (type == FILE_TYPE_CHAR && !IsTerminal(stream));
}

std::size_t TerminalWidth(Stream stream) {
  constexpr std::size_t USUAL = 80;
  CONSOLE_SCREEN_BUFFER_INFO info = {};
  if (GetConsoleScreenBufferInfo(StandardHandle(stream), &info) == 0) return USUAL;
  return static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left + 1);
}

std::size_t ReadSome(std::intptr_t handle, char* to, std::size_t capacity, int* error) {
  DWORD count = 0;
  if (IsInterrupted()) return 0;
  if (ReadFile(ToHandle(handle), to, static_cast<DWORD>(capacity), &count, nullptr) != 0) {
    return count;
  }
  const int failure = LastError();
  if (!IsInterrupted() && failure != ERROR_BROKEN_PIPE) *error = failure;
  return 0;
}

std::size_t ReadAt(std::intptr_t handle, std::uint64_t offset, char* to, std::size_t capacity,
                   int* error) {
  OVERLAPPED place = {};
  place.Offset = static_cast<DWORD>(offset);
  place.OffsetHigh = static_cast<DWORD>(offset >> 32);
  DWORD count = 0;
  if (ReadFile(ToHandle(handle), to, static_cast<DWORD>(capacity), &count, &place) == 0 &&
      LastError() != ERROR_HANDLE_EOF) {
    *error = LastError();
  }
  return count;
}

std::intptr_t OpenForReading(const std::string& path, int* error) {
  const HANDLE file = OpenPath(path, GENERIC_READ, 0);
  if (file == INVALID_HANDLE_VALUE) *error = LastError();
  return reinterpret_cast<std::intptr_t>(file);
}

std::intptr_t StandardInput() {
  return reinterpret_cast<std::intptr_t>(StandardHandle(Stream::INPUT));
}

void CloseHandle(std::intptr_t handle) { ::CloseHandle(ToHandle(handle)); }

int WriteAll(Stream stream, std::string_view bytes) {
  const HANDLE handle = StandardHandle(stream);
  DWORD mode = 0;
  if (GetConsoleMode(handle, &mode) != 0) return WriteToConsole(handle, bytes);
  while (!bytes.empty()) {
    constexpr std::size_t MOST = 16'384;
    const DWORD count = static_cast<DWORD>(std::min(MOST, bytes.size()));
    DWORD written = 0;
    ++writeSteps;
    const BOOL isWritten = WriteFile(handle, bytes.data(), count, &written, nullptr);
    const int error = LastError();
    ++writeSteps;
    if (isWritten == 0) return error;
    bytes.remove_prefix(written);
  }
  return 0;
}

bool IsClosedPipe(int error) {
  return error == ERROR_BROKEN_PIPE || error == ERROR_NO_DATA || error == ERROR_PIPE_NOT_CONNECTED;
}

}  // namespace typescout::cli::platform
