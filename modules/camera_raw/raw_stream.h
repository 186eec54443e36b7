// A file as LibRaw reads it.
#ifndef TYPESCOUT_MODULES_CAMERA_RAW_RAW_STREAM_H
#define TYPESCOUT_MODULES_CAMERA_RAW_RAW_STREAM_H

#include <libraw/libraw.h>

#include <cstdint>

#include "modules/bounded_file.h"

namespace camera_raw {

// Its functions throw modules::LimitReached.
class RawStream final : public LibRaw_abstract_datastream {
 public:
  // `file` is open and outlives the stream. `reportedSize` is the size that LibRaw is given.
  RawStream(const posix_host::RegularFile& file, std::int64_t reportedSize)
      : file_(file), size_(reportedSize) {}

  int valid() override { return 1; }
  int read(void* to, std::size_t size, std::size_t count) override;
  int seek(INT64 offset, int origin) override;
  INT64 tell() override { return position_; }
  INT64 size() override { return size_; }
  int get_char() override;
  char* gets(char* line, int capacity) override;
  int scanf_one(const char* format, void* value) override;
  int eof() override { return position_ >= file_.size(); }
  int jpeg_src(void* /*decoder*/) override { return -1; }
  void* make_jas_stream() override { return nullptr; }

 private:
  modules::BoundedFile file_;
  const std::int64_t size_;
  std::int64_t position_ = 0;
};

}  // namespace camera_raw

#endif  // TYPESCOUT_MODULES_CAMERA_RAW_RAW_STREAM_H
