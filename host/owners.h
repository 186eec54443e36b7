// Owner objects for the host's resources. Each releases its resource at the end of its scope.
#ifndef TYPESCOUT_HOST_OWNERS_H
#define TYPESCOUT_HOST_OWNERS_H

#include <memory>
#include <utility>

#include "host/file.h"

namespace typescout {

// One file object: created, opened at most once, closed and destroyed.
class FileOwner {
 public:
  FileOwner() = default;
  FileOwner(const FileOwner&) = delete;
  FileOwner& operator=(const FileOwner&) = delete;
  ~FileOwner() {
    if (file_ != nullptr) file_->Close();
  }

  // Opens the file for reading. After false, nothing else may be called. `path` may be null.
  bool Open(const wchar_t* path) {
    constexpr std::int32_t READ_EXISTING = 0;
    file_.reset(TvnUtils::CFile::CreateObject());
    return file_ != nullptr && file_->Open(path, READ_EXISTING) != 0;
  }

  // Whether the position is now `offset` bytes from the start.
  bool SeekTo(std::uint64_t offset) {
    constexpr std::int32_t FROM_START = 0;
    return file_->Seek(offset, FROM_START) == offset;
  }

  TvnUtils::CFile* operator->() const { return file_.get(); }

 private:
  std::unique_ptr<TvnUtils::CFile> file_;
};

// One reference to a storage or a stream.
template <typename Interface>
class InterfaceOwner {
 public:
  InterfaceOwner() = default;
  InterfaceOwner(InterfaceOwner&& other) noexcept : held_(std::exchange(other.held_, nullptr)) {}
  InterfaceOwner& operator=(InterfaceOwner&&) = delete;
  ~InterfaceOwner() {
    if (held_ != nullptr) held_->Release();
  }

  Interface* get() const { return held_; }
  Interface* operator->() const { return held_; }
  explicit operator bool() const { return held_ != nullptr; }

  // Where an opening function puts what it opened; only while nothing is held.
  Interface** Receive() { return &held_; }

 private:
  Interface* held_ = nullptr;
};

}  // namespace typescout

#endif  // TYPESCOUT_HOST_OWNERS_H
