// Images of the suite's paint program: its native format, and the TIFF files that it writes.
//
// The program opens the first directory of its TIFF files with the Software tag, where other
// writers, which keep the tags in order, have the image's width. TIFF 6.0, section 2 (structure)
// and section 8 (Software).
#include "detectors/native/native.h"
#include "host/owners.h"

namespace typescout {
namespace {

constexpr std::uint16_t TIFF_VERSION = 42;
constexpr std::uint16_t SOFTWARE_TAG = 0x0131;
constexpr ByteView::Position ENTRY_SIZE = 12;
constexpr std::uint32_t NAME_SIZE = 18;  // with its terminating zero

// Fills `buffer` from the file; the view ends where the bytes that came end.
template <std::size_t N>
ByteView ReadBytes(const FileOwner& file, unsigned char (&buffer)[N]) {
  return {buffer, file->Read(buffer, N)};
}

// The tag's value lies anywhere in the file, so that the file itself is read, 30 bytes of it.
bool IsPaintTiff(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  if (head.Matches(0, "MM")) return false;
  if (head.U16Le(2) != TIFF_VERSION) return false;
  const std::uint32_t directory = head.U32Le(4);
  const std::uint32_t firstEntry = directory + 2;  // behind the count of entries; wraps at 4 GiB

  FileOwner file;
  if (!file.Open(probe->path)) return false;
  if (file->GetLength() <= static_cast<std::uint32_t>(directory + 10)) return false;
  if (!file.SeekTo(firstEntry)) return false;
  unsigned char entryBytes[ENTRY_SIZE];
  const ByteView entry = ReadBytes(file, entryBytes);
  if (entry.size() < ENTRY_SIZE) return false;
  if (entry.U16Le(0) != SOFTWARE_TAG || entry.U32Le(4) < NAME_SIZE) return false;
  if (!file.SeekTo(entry.U32Le(8))) return false;
  unsigned char name[NAME_SIZE];
  return ReadBytes(file, name).Matches(0, "Tavon PIXEL-FORGE");
}

bool HasPaintSignature(ByteView head) {
  return head.size() > 8 && (head.Matches(0, "PXF9FILE") || head.Matches(0, "PXF7FILE") ||
                             head.Matches(0, "PXF8FILE"));
}

}  // namespace

std::int32_t DetectPaintImage(const ProbeContext* probe) {
  return HasPaintSignature(Head(probe)) || IsPaintTiff(probe);
}

}  // namespace typescout
