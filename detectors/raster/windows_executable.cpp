#include "detectors/raster/windows_executable.h"

namespace typescout {

bool IsWindowsExecutable(const ByteView& head) {
  if (!head.Matches(0, "MZ")) return false;
  // Only the low half of the 32-bit offset counts. The header's own fields may lie past the head.
  const std::uint16_t header = head.U16Le(60);
  if (head.size() <= header) return false;
  if (head.Matches(header, "NE")) {
    constexpr std::uint8_t TARGET_WINDOWS = 2;
    constexpr std::uint16_t WINDOWS_3_0 = 0x0300;
    return head.U8(header + 54) == TARGET_WINDOWS && head.U16Le(header + 62) >= WINDOWS_3_0;
  }
  return head.Matches(header, "PE\0\0");
}

}  // namespace typescout
