#include "core/probed_file.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "core/file_context.h"

namespace typescout {
namespace {

constexpr std::uint32_t KEEP_WRITERS_OUT = STGM_READ | STGM_SHARE_DENY_WRITE;
constexpr std::uint32_t LET_WRITERS_IN = STGM_READ | STGM_SHARE_DENY_NONE | STGM_TRANSACTED;

// The two signatures of compound documents that Windows knows: today's ([MS-CFB] 2.2) and that of
// the format's early form.
bool HasDocumentSignature(const ByteView& head) {
  return head.Matches(0, "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1") ||
         head.Matches(0, "\x0E\x11\xFC\x0D\xD0\xCF\x11\x0E");
}

}  // namespace

bool ProbedFile::ReadHead(const FileOwner& file) {
  const std::uint64_t length = file->GetLength();
  const auto wanted = static_cast<std::uint32_t>(std::min<std::uint64_t>(length, HEAD_CAPACITY));
  // Some systems give files that they make up on reading the length 0. One byte tells whether such
  // a file is empty.
  const std::uint32_t asked = std::max(wanted, std::uint32_t{1});
  std::unique_ptr<unsigned char[]> head(new (std::nothrow) unsigned char[asked]);
  if (head == nullptr) return false;
  file->SeekToBegin();
  const std::uint32_t got = file->Read(head.get(), asked);
  if (got < wanted) return false;
  head_ = std::move(head);
  headLength_ = static_cast<std::int32_t>(wanted);
  length_ = length;
  isWhole_ = got == length;
  isRead_ = true;
  return true;
}

bool ProbedFile::UseCallerBytes(const unsigned char* bytes, std::int32_t length) {
  if (bytes == nullptr || length < 0) return false;
  const auto size = static_cast<std::size_t>(length);
  head_.reset(new (std::nothrow) unsigned char[std::max(size, std::size_t{1})]);
  if (head_ == nullptr) return false;
  std::memcpy(head_.get(), bytes, size);
  headLength_ = length;
  return true;
}

bool ProbedFile::Holds(std::uint64_t offset, std::uint64_t count) const {
  const auto held = static_cast<std::uint64_t>(headLength_);
  return isRead_ && (isWhole_ || (offset <= held && count <= held - offset));
}

ByteView ProbedFile::Bytes(std::uint64_t offset, std::uint64_t count) const {
  const auto held = static_cast<std::uint64_t>(headLength_);
  if (offset >= held) return {};
  return {head_.get() + offset, static_cast<ByteView::Position>(std::min(count, held - offset))};
}

// The head can only rule a document out; whether the file is one, the host decides.
bool ProbedFile::MayBeDocument(const wchar_t* path) const {
  constexpr std::uint64_t SIGNATURE_SIZE = 8;
  if (path == nullptr) return false;
  if (!Holds(0, SIGNATURE_SIZE)) return StgIsStorageFile(path) == S_OK;
  return HasDocumentSignature(Bytes(0, SIGNATURE_SIZE));
}

IStorage* ProbedFile::Document(const wchar_t* path, WhenLocked whenLocked) {
  if (!hasTriedDocument_) {
    hasTriedDocument_ = true;
    if (MayBeDocument(path)) {
      openResult_ =
          StgOpenStorage(path, nullptr, KEEP_WRITERS_OUT, nullptr, 0, document_.Receive());
    }
  }
  const bool isLocked = openResult_ == STG_E_ACCESSDENIED || openResult_ == STG_E_LOCKVIOLATION;
  if (isLocked && whenLocked == WhenLocked::SHARE) {
    openResult_ = StgOpenStorage(path, nullptr, LET_WRITERS_IN, nullptr, 0, document_.Receive());
  }
  return document_.get();
}

FileReader::FileReader(const ProbeContext* probe)
    : known_(probe->file != nullptr && probe->file->probed.IsRead() ? &probe->file->probed
                                                                    : nullptr),
      path_(probe->path) {}

bool FileReader::Open() {
  if (state_ == NOT_TRIED) state_ = file_.Open(path_) ? OPEN : FAILED;
  return state_ == OPEN;
}

std::uint64_t FileReader::Length() {
  if (known_ != nullptr && state_ == NOT_TRIED) return known_->Length();
  return Open() ? file_->GetLength() : 0;
}

bool FileReader::SeekTo(std::uint64_t offset) {
  position_ = offset;
  if (known_ != nullptr && (known_->Holds(offset, 1) || offset > known_->Length())) {
    return offset <= known_->Length();
  }
  if (!Open()) return false;
  filePosition_ = offset;
  return file_.SeekTo(offset);
}

ByteView FileReader::Read(std::span<unsigned char> buffer) {
  ByteView bytes;
  if (known_ != nullptr && known_->Holds(position_, buffer.size())) {
    bytes = known_->Bytes(position_, buffer.size());
  } else {
    if (!Open()) return {};
    if (filePosition_ != position_ && !file_.SeekTo(position_)) return {};
    bytes = {buffer.data(), file_->Read(buffer.data(), static_cast<std::uint32_t>(buffer.size()))};
    filePosition_ = position_ + static_cast<std::uint64_t>(bytes.size());
  }
  position_ += static_cast<std::uint64_t>(bytes.size());
  return bytes;
}

}  // namespace typescout
