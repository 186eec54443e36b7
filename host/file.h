// The host suite's file object.
#ifndef TYPESCOUT_HOST_FILE_H
#define TYPESCOUT_HOST_FILE_H

#include <cstdint>

namespace TvnUtils {

// A file to read from. The order of the virtual functions is the suite's binary interface, which
// includes some that are never called from here.
class CFile {
 public:
  // A new object, closed; the caller deletes it. Null when memory runs out.
  static CFile* CreateObject();

  CFile(const CFile&) = delete;
  CFile& operator=(const CFile&) = delete;
  virtual ~CFile() = default;

  // May be called once after any Open, successful or not.
  virtual void Close() = 0;
  // Reads up to `count` bytes from the current position on; returns how many came: fewer at the end
  // of the file or on an error, 0 at or beyond the end.
  virtual std::uint32_t Read(void* bytes, std::uint32_t count) = 0;
  virtual std::uint32_t Write(const void* bytes,
                              std::uint32_t count) = 0;  // never called from here
  virtual void SeekToBegin() = 0;
  // Moves to `offset` bytes from the start (`origin` 0, the only one) and returns the new position,
  // which differs from `offset` when that lies beyond the end.
  virtual std::uint64_t Seek(std::uint64_t offset, std::int32_t origin) = 0;
  // In bytes, whatever the position.
  virtual std::uint64_t GetLength() = 0;
  virtual std::uint64_t GetPosition() = 0;           // never called from here
  virtual bool SetLength(std::uint64_t length) = 0;  // never called from here
  // Opens an existing file for reading (`mode` 0, the only one); non-zero on success. A null path
  // gives 0, a missing or unreadable file too, and a folder, pipe, socket or device, which is not
  // read from. Throws nothing.
  virtual std::int32_t Open(const wchar_t* path, std::int32_t mode) = 0;

 protected:
  CFile() = default;
};

}  // namespace TvnUtils

#endif  // TYPESCOUT_HOST_FILE_H
