// The suite's own formats, recognised by a few bytes or by a ZIP header and the file's name.
#include <cstring>

#include "detectors/container_headers.h"
#include "detectors/native/native.h"
#include "host/graphics.h"
#include "host/memory_stream.h"
#include "host/path.h"

namespace typescout {
namespace {

// The signature of a local file header. PKWARE APPNOTE.TXT, 4.3.7.
bool IsZip(ByteView head) { return head.Matches(0, "PK\x03\x04"); }

bool HasNoClass(const ProbeContext* probe) {
  constexpr CLSID NONE = {};
  return std::memcmp(&probe->classId, &NONE, sizeof NONE) == 0;
}

bool HasDrawingExtension(const wchar_t* path) {
  return SystemIO::Path::HasExtension(path, L".vxr") ||
         SystemIO::Path::HasExtension(path, L".vxt") ||
         SystemIO::Path::HasExtension(path, L".vxrt");
}

bool IsZipNamed(const ProbeContext* probe, const wchar_t* extension) {
  if (!IsZip(Head(probe)) || probe->path == nullptr) return false;
  return SystemIO::Path::GetExtension(probe->path)
             .CompareNoCase(TvnPlatform::TvnStringViewT<wchar_t>(extension)) == 0;
}

}  // namespace

// The drawing format: a RIFF file, or a ZIP archive under one of the drawing extensions.
std::int32_t DetectNativeDrawing(const ProbeContext* probe) {
  if (!HasNoClass(probe)) return 0;
  const ByteView head = Head(probe);
  if (IsRiff(head)) {
    return head.MatchesNoCase(RIFF_FORM_TYPE, "VXR") || head.MatchesNoCase(RIFF_FORM_TYPE, "VXT") ||
           head.MatchesNoCase(RIFF_FORM_TYPE, "VXST");
  }
  return IsZip(head) && probe->path != nullptr && HasDrawingExtension(probe->path);
}

std::int32_t DetectTarForm(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return IsRiff(head) && head.Matches(RIFF_FORM_TYPE, "TAR");
}

std::int32_t DetectTechnicalDrawing(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  if (IsRiff(head)) return head.MatchesNoCase(RIFF_FORM_TYPE, "ZRS");
  return IsZipNamed(probe, L".zrs");
}

std::int32_t DetectSymbolLibrary(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  if (IsRiff(head)) return head.MatchesNoCase(RIFF_FORM_TYPE, "TSL");
  return IsZipNamed(probe, L".tsl");
}

std::int32_t DetectVxrComp1(const ProbeContext* probe) {
  return Head(probe).Matches(0, "VXRCOMP1");
}

std::int32_t DetectVxrComp2(const ProbeContext* probe) {
  return Head(probe).Matches(0, "VXRCOMP2");
}

// BUDI, the graphics library's own format: the library is asked.
std::int32_t DetectBudi(const ProbeContext* probe) {
  return BUDI_IsBUDI(TvnUtils::MemStream::OpenOnRef(probe->head, probe->headLength));
}

}  // namespace typescout
