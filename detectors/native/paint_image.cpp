// Images of the suite's paint program: its native format, and the TIFF files that it writes.
//
// The program opens the first directory of its TIFF files with the Software tag, where other
// writers, which keep the tags in order, have the image's width. TIFF 6.0, section 2 (structure)
// and section 8 (Software).
#include "core/probed_file.h"
#include "detectors/native/native.h"

namespace typescout {
namespace {

constexpr std::uint16_t TIFF_VERSION = 42;
constexpr std::uint16_t SOFTWARE_TAG = 0x0131;
constexpr ByteView::Position ENTRY_SIZE = 12;
constexpr std::uint32_t NAME_SIZE = 18;  // with its terminating zero

// The directory and the tag's value may lie anywhere in the file.
bool IsPaintTiff(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  if (head.Matches(0, "MM")) return false;
  if (head.U16Le(2) != TIFF_VERSION) return false;
  const std::uint32_t directory = head.U32Le(4);
  const std::uint32_t firstEntry = directory + 2;  // behind the count of entries; wraps at 4 GiB

  FileReader file(probe);
  if (file.Length() <= static_cast<std::uint32_t>(directory + 10)) return false;
  if (!file.SeekTo(firstEntry)) return false;
  unsigned char entryBytes[ENTRY_SIZE];
  const ByteView entry = file.Read(entryBytes);
  if (entry.size() < ENTRY_SIZE) return false;
  if (entry.U16Le(0) != SOFTWARE_TAG || entry.U32Le(4) < NAME_SIZE) return false;
  if (!file.SeekTo(entry.U32Le(8))) return false;
  unsigned char name[NAME_SIZE];
  return file.Read(name).Matches(0, "Tavon PIXEL-FORGE");
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
