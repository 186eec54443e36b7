// What one call knows about its file. What was read or opened once is not read or opened again.
#ifndef TYPESCOUT_CORE_PROBED_FILE_H
#define TYPESCOUT_CORE_PROBED_FILE_H

#include <cstdint>
#include <memory>
#include <span>

#include "core/byte_view.h"
#include "core/probe_context.h"
#include "host/owners.h"
#include "host/structured_storage.h"

namespace typescout {

// Lives as long as the call. An answer may come from here instead of from the file, because no
// caller can tell two reads of an unchanged file from one.
class ProbedFile {
 public:
  ProbedFile() = default;
  ProbedFile(const ProbedFile&) = delete;
  ProbedFile& operator=(const ProbedFile&) = delete;

  // Reads the head: the first HEAD_CAPACITY bytes of the open `file`, or all that it has. False,
  // with no head, when fewer bytes come than the file is long or memory runs out.
  bool ReadHead(const FileOwner& file);

  // Copies the caller's `length` bytes, which replace the head of a file that could not be
  // read. Nothing is known about the file then. False, with no head, when `bytes` is null, `length`
  // is negative or memory runs out.
  bool UseCallerBytes(const unsigned char* bytes, std::int32_t length);

  // Where the head lies; null before one of the two above has succeeded.
  const unsigned char* HeadBytes() const { return head_.get(); }
  // In bytes. Read the head through a ByteView: the memory at and beyond this length is not
  // cleared and may not exist.
  std::int32_t HeadLength() const { return headLength_; }

  // Whether the head came from the file. The next three are for such a head only.
  bool IsRead() const { return isRead_; }
  // In bytes, as the file said when its head was read.
  std::uint64_t Length() const { return length_; }
  // Whether the head holds the `count` bytes at `offset`, or all of them that the file has.
  bool Holds(std::uint64_t offset, std::uint64_t count) const;
  // Those bytes, while this object lives; fewer where the file ends before.
  ByteView Bytes(std::uint64_t offset, std::uint64_t count) const;

  enum class WhenLocked { GIVE_UP, SHARE };

  // The root of the file as a compound document; null when it is none or does not open. `path` may
  // be null. The first call opens the document and denies writing to other programs; this
  // object releases it. When another program's lock prevents that, SHARE tries once more and allows
  // writing.
  IStorage* Document(const wchar_t* path, WhenLocked whenLocked);

 private:
  bool MayBeDocument(const wchar_t* path) const;

  std::unique_ptr<unsigned char[]> head_;
  std::int32_t headLength_ = 0;
  bool isRead_ = false;
  bool isWhole_ = false;  // the head is the file: a read beyond it gives nothing
  std::uint64_t length_ = 0;

  bool hasTriedDocument_ = false;
  HRESULT openResult_ = S_FALSE;  // what opening the document without sharing answered
  InterfaceOwner<IStorage> document_;
};

// Reads the file for one detector, as the host's file object does, but from what the call knows
// where that is enough. Otherwise the file is opened, at most once, and closed with this object.
class FileReader {
 public:
  explicit FileReader(const ProbeContext* probe);

  // The file's length in bytes; 0 when the file cannot be opened.
  std::uint64_t Length();

  // Moves to `offset` bytes from the start. False when the file ends before it or cannot be opened.
  bool SeekTo(std::uint64_t offset);

  // Reads on from the position, at first the start, as many bytes as `buffer` has. The view shows
  // what came, fewer at the end of the file or on an error. It is valid while `buffer` and the call
  // last.
  ByteView Read(std::span<unsigned char> buffer);

 private:
  bool Open();

  const ProbedFile* known_;  // null when nothing is known
  const wchar_t* path_;
  enum { NOT_TRIED, OPEN, FAILED } state_ = NOT_TRIED;
  FileOwner file_;
  std::uint64_t position_ = 0;
  std::uint64_t filePosition_ = 0;  // where `file_` stands
};

}  // namespace typescout

#endif  // TYPESCOUT_CORE_PROBED_FILE_H
