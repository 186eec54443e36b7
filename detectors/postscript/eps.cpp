// PostScript jobs and Encapsulated PostScript. Adobe Technical Note 5002, "Encapsulated PostScript
// File Format Specification".
#include "detectors/container_headers.h"
#include "detectors/postscript/illustrator.h"
#include "detectors/postscript/postscript.h"
#include "detectors/postscript/text_lines.h"

namespace typescout {
namespace {

constexpr ByteView::Position DOS_EPS_HEADER_SIZE = 32;
constexpr std::size_t FIRST_LINE_CAPACITY = 254;

// Whether the header names a metafile or TIFF preview: the sum of their offsets and lengths, as a
// signed 32-bit number, is above 0.
bool HasPreview(ByteView head) {
  if (head.size() < DOS_EPS_HEADER_SIZE) return false;
  const std::uint32_t sum = head.U32Le(12) + head.U32Le(16) + head.U32Le(20) + head.U32Le(24);
  return static_cast<std::int32_t>(sum) > 0;
}

bool SaysEpsInFirstLine(ByteView head) {
  if (!head.Matches(0, "%!PS")) return false;
  TextLineReader lines(head.Text(), FIRST_LINE_CAPACITY);
  std::string_view line;
  lines.ReadTextLine(&line);
  return line.find("EPSF") != std::string_view::npos;
}

bool IsEps(ByteView head) {
  return head.Matches(0, DOS_EPS_MAGIC) ? HasPreview(head) : SaysEpsInFirstLine(head);
}

}  // namespace

// Documents of Illustrator 8 and before are left to the Illustrator filter.
std::int32_t DetectEps(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  if (probe->head == nullptr || !IsEps(head)) return 0;
  return !IsIllustratorUpToVersion8(probe);
}

// Documents of Illustrator are left to its filter.
std::int32_t DetectPostScript(const ProbeContext* probe) {
  constexpr ByteView::Position MIN_SIZE = 4;
  const ByteView head = Head(probe);
  if (head.size() < MIN_SIZE) return 0;
  if (head.Matches(0, DOS_EPS_MAGIC)) return 1;
  return (head.Matches(0, "%!") || OpensPrinterJob(head)) && DetectIllustrator(probe) == 0;
}

}  // namespace typescout
