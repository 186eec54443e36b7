// Illustrator documents in PostScript, recognised by their comments up to the end of the setup
// section. Adobe Technical Note 5001, "PostScript Language Document Structuring Conventions
// Specification", 3.0; Adobe Technical Note 5007, "Adobe Illustrator File Format Specification".
#include "detectors/postscript/illustrator.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "detectors/container_headers.h"
#include "detectors/postscript/postscript.h"
#include "detectors/postscript/text_lines.h"

namespace typescout {
namespace {

constexpr std::size_t LINE_CAPACITY = 159;
constexpr std::string_view END_SETUP = "%%EndSetup";

bool Contains(std::string_view line, std::string_view text) {
  return line.find(text) != std::string_view::npos;
}

// Whether the number around the first point of `text` (digits, the point, digits) is above 0 and at
// most 8.0. It counts as the double next to it.
bool HasVersionAtMost8(std::string_view text) {
  constexpr std::string_view DIGITS = "0123456789";
  // 2 to the power of -50 in decimal: 8 and this fraction still round to the double 8.0.
  constexpr std::string_view ROUNDED_OFF = "00000000000000088817841970012523233890533447265625";
  const std::size_t point = text.find('.');
  if (point == std::string_view::npos) return false;
  std::string_view whole = text.substr(0, point);
  whole.remove_prefix(whole.find_last_not_of(DIGITS) + 1);
  whole.remove_prefix(std::min(whole.find_first_not_of('0'), whole.size()));
  std::string_view fraction = text.substr(point + 1);
  fraction = fraction.substr(0, fraction.find_first_not_of(DIGITS));
  fraction = fraction.substr(0, fraction.find_last_not_of('0') + 1);
  if (whole.empty()) return !fraction.empty();
  if (whole == "8") return fraction <= ROUNDED_OFF;
  return whole.size() == 1 && whole < "8";
}

// Whether the first creator comment, before the end of the setup section, has such a version.
bool IsCreatorVersionAtMost8(std::string_view text) {
  MarkSearch creator(text, "%%Creator:");
  if (creator.IsAbsent()) return false;
  MarkSearch endSetup(text, END_SETUP);
  TextLineReader lines(text, LINE_CAPACITY);
  std::string_view line;
  while (lines.ReadTextLine(&line)) {
    if (creator.IsIn(line)) {
      std::string_view next;
      if (lines.ReadTextLine(&next) && Contains(next, "%%AI8_CreatorVersion:")) line = next;
      return HasVersionAtMost8(line);
    }
    if (endSetup.IsIn(line)) return false;
    const std::size_t position = lines.Position();
    lines.SkipLinesBefore(std::min(creator.NextFrom(position), endSetup.NextFrom(position)));
  }
  return false;
}

// Whether a PJL job switches the printer to PostScript and an Adobe PostScript program follows.
// Reads the next line after each step that holds; `*line` becomes the last line read.
bool IsPjlAroundAdobePostScript(TextLineReader* lines, std::string_view* line) {
  if (!Contains(*line, "%-12345X@PJL")) return false;
  lines->ReadTextLine(line);
  if (!Contains(*line, "@PJL ENTER LANGUAGE=POSTSCRIPT")) return false;
  lines->ReadTextLine(line);
  return Contains(*line, "EPSF") || Contains(*line, "%!PS-Adobe");
}

// The line before its first ':' that follows another character.
std::string_view UpToColon(std::string_view line) {
  return line.substr(0, line.find(':', line.find_first_not_of(':')));
}

// The creator marks of Illustrator and of related programs.
class IllustratorMarks {
 public:
  explicit IllustratorMarks(std::string_view text)
      : marks_{MarkSearch(text, "Adobe Illustrator"), MarkSearch(text, "Adobe_Illustrator"),
               MarkSearch(text, "A&L")} {}

  bool AreAbsent() const {
    return std::all_of(marks_.begin(), marks_.end(),
                       [](const MarkSearch& mark) { return mark.IsAbsent(); });
  }
  std::size_t NextFrom(std::size_t position) {
    return std::min(
        {marks_[0].NextFrom(position), marks_[1].NextFrom(position), marks_[2].NextFrom(position)});
  }
  bool AreIn(std::string_view line) {
    return std::any_of(marks_.begin(), marks_.end(),
                       [line](MarkSearch& mark) { return mark.IsIn(line); });
  }

 private:
  std::array<MarkSearch, 3> marks_;
};

// Whether an Illustrator mark and a bounding box stand in the lines from `line` on, up to the end
// of the setup section. Only lines that may change the answer are cut out and read.
bool HasMarkAndBox(std::string_view text, TextLineReader* lines, std::string_view line) {
  MarkSearch box(text, "%%BoundingBox:");
  if (box.IsAbsent()) return false;
  IllustratorMarks marks(text);
  if (marks.AreAbsent()) return false;
  MarkSearch endSetup(text, END_SETUP);

  bool markSeen = false;
  bool boxSeen = false;
  do {
    if (box.IsIn(line)) {
      boxSeen = true;
      line = UpToColon(line);
    }
    markSeen = markSeen || marks.AreIn(line);
    if (markSeen && boxSeen) return true;
    if (endSetup.IsIn(line)) return false;
    const std::size_t position = lines->Position();
    std::size_t next = endSetup.NextFrom(position);
    if (!boxSeen) next = std::min(next, box.NextFrom(position));
    if (!markSeen) next = std::min(next, marks.NextFrom(position));
    lines->SkipLinesBefore(next);
  } while (lines->ReadTextLine(&line));
  return false;
}

// What is known of the creator's version before the file is examined.
enum class Version { UNKNOWN, AT_MOST_8 };

bool IsIllustrator(const ProbeContext* probe, Version version) {
  const std::string_view text = Head(probe).Text();
  TextLineReader lines(text, LINE_CAPACITY);
  std::string_view line;
  if (!lines.ReadTextLine(&line)) return false;
  if (DetectIllustratorPdf(probe) != 0) return false;
  // A DOS EPS file is such a document only for a caller that means to use that filter.
  if (line.starts_with(DOS_EPS_MAGIC) && probe->file != nullptr &&
      RequestedFilter(probe) != ILLUSTRATOR) {
    return false;
  }
  if (Contains(line, "EPSF") && version == Version::UNKNOWN && !IsCreatorVersionAtMost8(text)) {
    return false;
  }
  if (IsPjlAroundAdobePostScript(&lines, &line)) return false;
  return HasMarkAndBox(text, &lines, line);
}

}  // namespace

bool IsIllustratorUpToVersion8(const ProbeContext* probe) {
  return IsCreatorVersionAtMost8(Head(probe).Text()) && IsIllustrator(probe, Version::AT_MOST_8);
}

std::int32_t DetectIllustrator(const ProbeContext* probe) {
  return IsIllustrator(probe, Version::UNKNOWN);
}

}  // namespace typescout
