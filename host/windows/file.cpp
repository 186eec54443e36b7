#include "host/file.h"

#include <windows.h>

#include <algorithm>
#include <new>

#include "host/windows/quiet_errors.h"

namespace {

// A file that another program holds open can be examined, and may be written, renamed and deleted
// meanwhile.
constexpr DWORD SHARE_ALL = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
// The name may lead to a pipe. Its server must not be able to impersonate the caller.
constexpr DWORD ANONYMOUS = SECURITY_SQOS_PRESENT | SECURITY_ANONYMOUS;

HANDLE OpenForReading(const wchar_t* path) {
  const windows_host::QuietErrors quiet;
  return CreateFileW(path, GENERIC_READ, SHARE_ALL, nullptr, OPEN_EXISTING,
                     FILE_ATTRIBUTE_NORMAL | ANONYMOUS, nullptr);
}

class File final : public TvnUtils::CFile {
 public:
  File() = default;
  ~File() override { CloseFile(); }

  void Close() override { CloseFile(); }
  std::uint32_t Read(void* bytes, std::uint32_t count) override {
    OVERLAPPED at = {};  // the handle is synchronous, so this is the position and nothing else
    at.Offset = static_cast<DWORD>(position_);
    at.OffsetHigh = static_cast<DWORD>(position_ >> 32);
    DWORD got = 0;
    if (!IsOpen() || ReadFile(handle_, bytes, count, &got, &at) == 0) return 0;
    position_ += got;
    return got;
  }
  std::uint32_t Write(const void* /*bytes*/, std::uint32_t /*count*/) override { return 0; }
  void SeekToBegin() override { position_ = 0; }
  std::uint64_t Seek(std::uint64_t offset, std::int32_t /*origin*/) override {
    return position_ = std::min(offset, size_);
  }
  std::uint64_t GetLength() override { return size_; }
  std::uint64_t GetPosition() override { return position_; }
  bool SetLength(std::uint64_t /*length*/) override { return false; }
  std::int32_t Open(const wchar_t* path, std::int32_t /*mode*/) override {
    CloseFile();
    if (path == nullptr) return 0;
    handle_ = OpenForReading(path);
    if (!IsOpen()) return 0;
    if (IsDiskFile()) return 1;
    CloseFile();
    return 0;
  }

 private:
  bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }

  // Whether it is a file on a disk, and not a pipe, a device, a folder or a raw disk. Sets the
  // size.
  bool IsDiskFile() {
    BY_HANDLE_FILE_INFORMATION file;  // not to be had for a raw disk
    constexpr DWORD OTHER_THINGS = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE;
    if (GetFileType(handle_) != FILE_TYPE_DISK || GetFileInformationByHandle(handle_, &file) == 0 ||
        (file.dwFileAttributes & OTHER_THINGS) != 0) {
      return false;
    }
    size_ = std::uint64_t{file.nFileSizeHigh} << 32 | file.nFileSizeLow;
    return true;
  }

  void CloseFile() {
    if (IsOpen()) CloseHandle(handle_);
    handle_ = INVALID_HANDLE_VALUE;
    position_ = 0;
    size_ = 0;
  }

  HANDLE handle_ = INVALID_HANDLE_VALUE;
  std::uint64_t position_ = 0;
  std::uint64_t size_ = 0;
};

}  // namespace

TvnUtils::CFile* TvnUtils::CFile::CreateObject() { return new (std::nothrow) File; }
