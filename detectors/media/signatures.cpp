// Video, animation, sound, web pages and 3D scenes, in registry order.
//
// A signature that ends in a byte other than 0 needs no length test: bytes beyond the head read as
// 0.
#include "detectors/container_headers.h"
#include "detectors/media/media.h"

namespace typescout {
namespace {

// Interchange File Format: "FORM", the size of what follows, and the form type. Electronic Arts,
// "EA IFF 85".
constexpr ByteView::Position IFF_FORM_TYPE = 8;
bool IsIff(ByteView head) { return head.Matches(0, "FORM"); }

}  // namespace

std::int32_t DetectAvi(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return IsRiff(head) && head.Matches(RIFF_FORM_TYPE, "AVI ");
}

// Animator animation, FLI or FLC: a header of 128 bytes with a magic number behind the file size.
std::int32_t DetectFlic(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return head.size() >= 128 && (head.U16Le(4) == 0xAF11 || head.U16Le(4) == 0xAF12);
}

// A pack, a video sequence (ISO/IEC 11172-1 and -2, 2.4) or the sync word of an audio frame
// (ISO/IEC 11172-3, 2.4.1.3).
std::int32_t DetectMpeg(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  if (head.size() < 12) return 0;
  return head.Matches(0, "\x00\x00\x01\xBA") || head.Matches(0, "\x00\x00\x01\xB3") ||
         (head.U8(0) == 0xFF && head.U8(1) >= 0xF0);
}

std::int32_t DetectAnimatedCursor(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return IsRiff(head) && head.Matches(RIFF_FORM_TYPE, "ACON");
}

// 3D metafile, binary or text, or a scene in the Virtual Reality Modeling Language (ISO/IEC 14772).
std::int32_t Detect3dmfOrVrml(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return head.MatchesNoCase(0, "3DMF") || head.MatchesNoCase(0, "#VRML") ||
         head.MatchesNoCase(0, "3DMetafile");
}

std::int32_t DetectHgb1(const ProbeContext* probe) { return Head(probe).Matches(0, "HGB1"); }

// A web page with a title, the tag all in upper or all in lower case.
std::int32_t DetectHtml(const ProbeContext* probe) {
  constexpr ByteView::Position SEARCHED = 1'024;
  const ByteView start = Head(probe).First(SEARCHED);
  return start.Find("<TITLE>") != ByteView::NOT_FOUND ||
         start.Find("<title>") != ByteView::NOT_FOUND;
}

std::int32_t DetectWave(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return IsRiff(head) && head.Matches(RIFF_FORM_TYPE, "WAVE");
}

std::int32_t DetectCreativeVoice(const ProbeContext* probe) {
  return Head(probe).Matches(0, "Creative Voice File");
}

// Macintosh sound, by the file type or the creator in its MacBinary header.
std::int32_t DetectMacBinarySound(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return head.size() >= 70 &&
         (head.Matches(MAC_BINARY_TYPE, "sfil") || head.Matches(MAC_BINARY_CREATOR, "jBox"));
}

// Audio Interchange File Format, plain or compressed. Apple, AIFF 1.3 and AIFF-C.
std::int32_t DetectAiff(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return IsIff(head) &&
         (head.Matches(IFF_FORM_TYPE, "AIFF") || head.Matches(IFF_FORM_TYPE, "AIFC"));
}

std::int32_t Detect8Svx(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  return IsIff(head) && head.Matches(IFF_FORM_TYPE, "8SVX");
}

// Standard MIDI file, plain (the first track follows the 14 bytes of the header chunk) or in RIFF.
// MIDI Manufacturers Association, Standard MIDI Files 1.0.
std::int32_t DetectMidi(const ProbeContext* probe) {
  const ByteView head = Head(probe);
  if (head.size() < 18) return 0;
  return (IsRiff(head) && head.Matches(RIFF_FORM_TYPE, "RMID")) ||
         (head.Matches(0, "MThd") && head.Matches(14, "MTrk"));
}

// Sun and NeXT sound of the encodings 1 to 3, in either byte order. An older magic number has a
// zero byte in place of the last letter.
std::int32_t DetectSunAudio(const ProbeContext* probe) {
  constexpr ByteView::Position ENCODING = 12;
  const ByteView head = Head(probe);
  if (head.Matches(0, ".snd") || head.Matches(0, ".sd\0")) {
    return head.Matches(ENCODING, "\0\0\0\x01") || head.Matches(ENCODING, "\0\0\0\x02") ||
           head.Matches(ENCODING, "\0\0\0\x03");
  }
  if (head.Matches(0, "dns.") || head.Matches(0, "\0ds.")) {
    const std::uint32_t encoding = head.U32Le(ENCODING);
    return encoding >= 1 && encoding <= 3;
  }
  return 0;
}

}  // namespace typescout
