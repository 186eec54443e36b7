// GIF, with one picture or several. CompuServe GIF89a, sections 17 to 27.
//
// To count the pictures, the blocks are walked to the second picture or to the end. Where they run
// past the head, the walk continues in the file.
#include <algorithm>
#include <limits>
#include <memory>
#include <new>

#include "core/probed_file.h"
#include "detectors/raster/raster.h"

namespace typescout {
namespace {

using Position = ByteView::Position;

constexpr std::uint8_t EXTENSION = 0x21;
constexpr std::uint8_t IMAGE_DESCRIPTOR = 0x2C;

constexpr std::uint8_t PLAIN_TEXT = 0x01;
constexpr std::uint8_t GRAPHIC_CONTROL = 0xF9;
constexpr std::uint8_t COMMENT = 0xFE;
constexpr std::uint8_t APPLICATION = 0xFF;

// The file as one sequence of bytes: the head, then a window that moves on over the rest. Positions
// are asked for in ascending order. What does not exist reads as 0.
class FileBytes {
 public:
  explicit FileBytes(const ProbeContext* probe) : head_(Head(probe)), file_(probe) {}

  // Throws the int 0 when a part of the file does not come as long as it should be.
  std::uint8_t At(Position at) {
    if (at < head_.size()) return head_.U8(at);
    if (at >= windowEnd_) MoveWindow(at);
    return window_.U8(at - windowStart_);
  }

 private:
  static constexpr std::uint64_t WINDOW_SIZE = 65'536;
  static constexpr Position END = std::numeric_limits<Position>::max();

  void MoveWindow(Position to) {
    window_ = {};
    windowStart_ = to;
    windowEnd_ = END;  // unless there is more, zeros from here on
    const auto start = static_cast<std::uint64_t>(to);
    if (start >= file_.Length()) return;          // as far as it is known without opening the file
    file_.SeekTo(start);                          // opens it; a failed seek is noticed by the read
    const std::uint64_t length = file_.Length();  // of the open file; 0 when it did not open
    if (start >= length) return;
    const std::uint64_t count = std::min(WINDOW_SIZE, length - start);
    if (buffer_ == nullptr) {
      buffer_.reset(new (std::nothrow) unsigned char[static_cast<std::size_t>(count)]);
    }
    if (buffer_ == nullptr) return;
    window_ = file_.Read({buffer_.get(), static_cast<std::size_t>(count)});
    if (window_.size() != static_cast<Position>(count)) throw int{0};
    if (count < length - start) windowEnd_ = to + window_.size();
  }

  ByteView head_;
  FileReader file_;
  std::unique_ptr<unsigned char[]> buffer_;  // the first window is the largest
  ByteView window_;
  Position windowStart_ = 0;
  Position windowEnd_ = 0;
};

// The size of the colour table that a flags byte announces.
Position ColourTableSize(std::uint8_t flags) {
  return (flags & 0x80) != 0 ? Position{3} << ((flags & 7) + 1) : 0;
}

// From the first size byte of a chain of sub-blocks to what follows its terminator.
Position SkipChain(FileBytes& bytes, Position at) {
  while (const std::uint8_t size = bytes.At(at)) at += 1 + size;
  return at + 1;
}

// From an extension's introducer to what follows it; 0 for an extension that does not exist.
Position SkipExtension(FileBytes& bytes, Position at) {
  switch (bytes.At(at + 1)) {
    case GRAPHIC_CONTROL:
      return at + 8;
    case COMMENT:
      return SkipChain(bytes, at + 2);
    case PLAIN_TEXT:
    case APPLICATION:
      return SkipChain(bytes, at + 3 + bytes.At(at + 2));
    default:
      return 0;
  }
}

// The number of pictures, counted up to 2. A byte that begins no block ends the walk with the count
// so far.
int CountGifImages(const ProbeContext* probe) {
  constexpr Position SCREEN_FLAGS = 10;
  constexpr Position FIRST_BLOCK = 13;
  constexpr Position DESCRIPTOR_FLAGS = 9;
  constexpr Position DESCRIPTOR_SIZE = 10;
  constexpr Position MINIMUM_CODE_SIZE = 1;

  FileBytes bytes(probe);
  int count = 0;
  Position at = FIRST_BLOCK + ColourTableSize(bytes.At(SCREEN_FLAGS));
  while (at != 0) {
    const std::uint8_t introducer = bytes.At(at);
    if (introducer == IMAGE_DESCRIPTOR) {
      if (++count == 2) break;
      const Position table = ColourTableSize(bytes.At(at + DESCRIPTOR_FLAGS));
      at = SkipChain(bytes, at + DESCRIPTOR_SIZE + table + MINIMUM_CODE_SIZE);
    } else if (introducer == EXTENSION) {
      at = SkipExtension(bytes, at);
    } else {
      break;
    }
  }
  return count;
}

bool HasGifSignature(const ByteView& head) {
  return head.size() >= 8 && (head.Matches(0, "GIF87a") || head.Matches(0, "GIF89a"));
}

}  // namespace

std::int32_t DetectGif(const ProbeContext* probe) {
  return HasGifSignature(Head(probe)) && CountGifImages(probe) == 1;
}

std::int32_t DetectAnimatedGif(const ProbeContext* probe) {
  return HasGifSignature(Head(probe)) && CountGifImages(probe) == 2;
}

}  // namespace typescout
