#include "host/file.h"

#include <algorithm>
#include <new>

#include "host/handle.h"
#include "host/posix/regular_file.h"

namespace {

class File final : public TvnUtils::CFile {
 public:
  void Close() override { file_.Close(); }
  std::uint32_t Read(void* bytes, std::uint32_t count) override {
    const auto got = static_cast<std::uint32_t>(file_.ReadAt(position_, bytes, count));
    position_ += got;
    return got;
  }
  std::uint32_t Write(const void* /*bytes*/, std::uint32_t /*count*/) override { return 0; }
  void SeekToBegin() override { position_ = 0; }
  std::uint64_t Seek(std::uint64_t offset, std::int32_t /*origin*/) override {
    return position_ = std::min(offset, file_.size());
  }
  std::uint64_t GetLength() override { return file_.size(); }
  std::uint64_t GetPosition() override { return position_; }
  bool SetLength(std::uint64_t /*length*/) override { return false; }
  std::int32_t Open(const wchar_t* path, std::int32_t /*mode*/) override {
    position_ = 0;
    return file_.Open(path) ? 1 : 0;
  }

 private:
  posix_host::RegularFile file_;
  std::uint64_t position_ = 0;
};

}  // namespace

TvnUtils::CFile* TvnUtils::CFile::CreateObject() { return new (std::nothrow) File; }

// POSIX has no handles: there is nothing to close.
extern "C" int CloseHandle(void* /*handle*/) { return 0; }
