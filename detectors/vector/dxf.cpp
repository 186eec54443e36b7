// Drawing exchange file, binary or text. Autodesk, DXF Reference, "About ASCII DXF files" and
// "About binary DXF files".
#include <algorithm>

#include "detectors/vector/vector.h"

namespace typescout {
namespace {

// Sets `*line` to the line that starts at `at`, without its end. False, with `*line` as it was,
// when none of the next MAX_LINE + 1 bytes of the head ends it.
bool TakeLine(std::string_view head, std::size_t at, std::string_view* line) {
  constexpr std::size_t MAX_LINE = 133;
  const std::string_view from = head.substr(at, MAX_LINE + 1);
  const auto end =
      std::find_if(from.begin(), from.end(), [](char c) { return c == '\r' || c == '\n'; });
  if (end == from.end()) return false;
  *line = from.substr(0, static_cast<std::size_t>(end - from.begin()));
  return true;
}

// Whether the line reads as the integer 0: no digit but 0 after white space and a sign. A line
// without a number is 0 too.
bool IsGroupCodeZero(std::string_view line) {
  std::size_t at = line.find_first_not_of(" \t\v\f");
  if (at == std::string_view::npos) return true;
  if (line[at] == '+' || line[at] == '-') ++at;
  at = line.find_first_not_of('0', at);
  return at == std::string_view::npos || !IsAsciiDigit(static_cast<std::uint8_t>(line[at]));
}

}  // namespace

// The text form opens with group code 0 on one line and its value SECTION on the next.
std::int32_t DetectDxf(const ProbeContext* probe) {
  const std::string_view head = Head(probe).Text();
  if (head.starts_with("AutoCAD Binary DXF")) return 1;
  std::string_view code;
  if (!TakeLine(head, 0, &code) || !IsGroupCodeZero(code)) return 0;
  const std::string_view rest = head.substr(code.size());
  std::string_view value;
  return TakeLine(rest, rest.starts_with("\r\n") ? 2 : 1, &value) && value.starts_with("SECTION");
}

}  // namespace typescout
