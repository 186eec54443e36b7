#include "cli/platform/temporary_file.h"

#include <mutex>

#include "cli/platform/folders.h"
#include "cli/platform/windows/handles.h"
#include "cli/utf8.h"

namespace typescout::cli::platform {
namespace {

std::mutex mutex;
std::string current;  // the path; empty for none

}  // namespace

void RemoveTemporaryFile() {
  const std::lock_guard<std::mutex> lock(mutex);
  if (!current.empty()) DeleteFileW(SystemPath(current).c_str());
  current.clear();
}

std::string TemporaryFolder() {
  std::wstring folder(GetTempPathW(0, nullptr), L'\0');
  folder.resize(GetTempPathW(static_cast<DWORD>(folder.size()), folder.data()));
  return FromWide(folder);
}

TemporaryFile::TemporaryFile(std::string_view extension) {
  path_ = JoinPath(TemporaryFolder(), "typescout-") + std::to_string(GetCurrentProcessId());
  if (!extension.empty()) path_.append(".").append(extension);
  const std::lock_guard<std::mutex> lock(mutex);
  const HANDLE file = CreateFileW(SystemPath(path_).c_str(), GENERIC_WRITE, 0, nullptr,
                                  CREATE_ALWAYS, FILE_ATTRIBUTE_TEMPORARY, nullptr);
  handle_ = reinterpret_cast<std::intptr_t>(file);
  if (file == INVALID_HANDLE_VALUE) {
    error_ = LastError();
  } else {
    current = path_;
  }
}

TemporaryFile::~TemporaryFile() {
  Finish();
  RemoveTemporaryFile();
}

void TemporaryFile::Append(std::string_view bytes) {
  while (error_ == 0 && !bytes.empty()) {
    DWORD written = 0;
    const DWORD count = static_cast<DWORD>(bytes.size());
    if (WriteFile(ToHandle(handle_), bytes.data(), count, &written, nullptr) == 0) {
      error_ = LastError();
    }
    bytes.remove_prefix(written);
  }
}

int TemporaryFile::Finish() {
  if (ToHandle(handle_) != INVALID_HANDLE_VALUE) ::CloseHandle(ToHandle(handle_));
  handle_ = reinterpret_cast<std::intptr_t>(INVALID_HANDLE_VALUE);
  return error_;
}

}  // namespace typescout::cli::platform
