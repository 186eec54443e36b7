#include "core/registry.h"

#include <algorithm>
#include <array>

#include "detectors/documents/documents.h"
#include "detectors/media/media.h"
#include "detectors/native/native.h"
#include "detectors/postscript/postscript.h"
#include "detectors/raster/raster.h"
#include "detectors/vector/vector.h"

namespace typescout {

namespace {

// The comment behind each row says what its detector looks at; docs/filters.md quotes it
// (tools/filters.py).
// clang-format off
constexpr auto ROWS = std::to_array<DetectorEntry>({
    // The first row never matches: identifiers that the registry does not know map to it.
    {0x0700, DetectNever},              // accepts no file
    {0x0707, DetectNever},              // accepts no file
    // The paint program's TIFF files are accepted before any raster row is asked.
    {0x0710, DetectPaintImage},         // "PXF7FILE" to "PXF9FILE"; the TIFF of that program
    {0x0301, DetectWindowsBitmap},      // "BM", then a header of 40 bytes
    {0x0305, DetectGif},                // "GIF87a" or "GIF89a" and blocks with one picture
    // Accepts TIFF headers too and is asked before the TIFF row: a full scan calls every TIFF 0x0306.
    {0x0306, DetectJpeg},               // the markers up to the frame header; a TIFF header
    {0x0318, DetectOs2Bitmap},          // "BM", then a header of 12 or 64 bytes
    {0x0509, DetectEps},                // "%!PS" and "EPSF" in line 1; a DOS header with a preview
    {0x0334, DetectJpeg2000},           // the JP2 signature box; the codestream's first markers
    {0x0703, DetectNativeDrawing},      // RIFF form VXR, VXT or VXST; a ZIP file by its name
    {0x070A, DetectTarForm},            // RIFF form TAR
    {0x070D, DetectTechnicalDrawing},   // RIFF form ZRS; a ZIP file named .zrs
    {0x0712, DetectSymbolLibrary},      // RIFF form TSL; a ZIP file named .tsl
    // PostScript jobs come before Illustrator documents: the detector refuses what DetectIllustrator accepts.
    {0x050A, DetectPostScript},         // "%!", also behind a printer job's start; a DOS EPS header
    {0x0704, DetectVxrComp1},           // "VXRCOMP1"
    {0x0705, DetectVxrComp2},           // "VXRCOMP2"
    // One detector, three filters: a full scan answers 0x0713, the other two are for list checks.
    {0x0713, DetectBudi},               // what the suite's graphics library says
    {0x0701, DetectBudi},               // what the suite's graphics library says
    {0x0702, DetectBudi},               // what the suite's graphics library says
    {0x0535, DetectIllustratorPdf},     // "%PDF-", then what the PDF import module says
    {0x0503, DetectIllustrator},        // Illustrator's comments and a bounding box in PostScript
    {0x0507, DetectScriptoraGraphics},  // "\xFFQLX", type graphics, plain or in a document's stream
    {0x050E, DetectWindowsMetafile},    // the placeable key; type 1 or 2 and a header of 9 words
    {0x0540, DetectFilter0540},         // four bytes, then the complement of each
    {0x0807, DetectScriptora0807},      // "\xFFQLX", version 2.0 to 2.4, plain or in a stream
    {0x0808, DetectScriptora0808},      // "\xFFQLX", version 0.1
    {0x0809, DetectScriptora0809},      // "\xFFQLX", version 0.0
    // TGA has no magic number: icons, cursors and MPEG start codes satisfy it before their own rows.
    {0x0303, DetectTarga},              // a colour-map type and an image type that exist
    {0x0302, DetectPcx},                // manufacturer 10, a known version, encoding 1
    {0x0308, DetectScitexCt},           // "CT" at 80, small numbers at 1024, 1027 and 1080
    {0x0304, DetectTiff},               // "II*\0" or "MM\0*"
    // Each of the three accepts Windows executables; cursors are asked first.
    {0x0311, DetectCursorResource},     // bytes 00 00 02 00; an executable's header
    {0x0310, DetectIconResource},       // bytes 00 00 01 00; an executable's header
    {0x0312, DetectExecutableResource}, // "MZ" and a Windows executable's header
    {0x0314, DetectPhotoshop},          // "8BPS"
    {0x0337, DetectCameraRaw},          // what the camera raw module says
    {0x0317, DetectMacPaint},           // "PNTG" in a MacBinary header or none; a packed first line
    {0x0320, DetectFilter0320},         // "srcdocid"
    {0x0324, DetectPaintEps},           // "%!", a bounding box, the paint program and its version
    {0x0321, DetectNever},              // accepts no file
    {0x0322, DetectPng},                // the eight-byte signature
    // WebP stands twice, here and six rows on; look-ups find this one.
    {0x0339, DetectWebP},               // RIFF form WEBP
    {0x0325, DetectNever},              // accepts no file
    {0x0327, DetectFilter0327},         // the word 2 and, at 40, the number 1.8
    {0x0329, DetectXpm},                // "/* XPM */"
    {0x0330, DetectGimpXcf},            // "gimp xcf "
    {0x0331, DetectPortableAnymap},     // "P1" to "P6"
    {0x0339, DetectWebP},               // RIFF form WEBP
    {0x0600, DetectAvi},                // RIFF form AVI
    {0x0607, DetectFlic},               // 0xAF11 or 0xAF12 at 4
    {0x060F, DetectMpeg},               // a pack, sequence or audio frame start code
    {0x0610, DetectNever},              // accepts no file
    {0x0614, DetectAnimatedCursor},     // RIFF form ACON
    {0x0616, DetectAnimatedGif},        // "GIF87a" or "GIF89a" and blocks with several pictures
    {0x0504, DetectFilter0504},         // FF FF and, at 6, 0 or 2
    // One detector, two filters: a full scan answers 0x0500.
    {0x0500, DetectCgm},                // BEGIN METAFILE in one of the three encodings
    {0x090B, DetectCgm},                // BEGIN METAFILE in one of the three encodings
    {0x0502, DetectFilter0502},         // 01 FF, 04 03 at 3, 1 or 2 at 7
    {0x0510, DetectDxf},                // group code 0, then SECTION; "AutoCAD Binary DXF"
    // The detector of 0x050A again, for list checks.
    {0x0515, DetectPostScript},         // "%!", also behind a printer job's start; a DOS EPS header
    {0x0501, DetectHpgl},               // plotter instructions in the first 1,024 bytes
    {0x050B, DetectFilter050B},         // D3 A8 A8 at 2, at least 2,000 bytes
    {0x050D, DetectPict},               // the version opcode behind a 512-byte header
    {0x0514, DetectEnhancedMetafile},   // " EMF" at 40
    {0x050F, DetectTavonMetafile},      // "@TavonMF"
    {0x0505, DetectFilter0505},         // records in groups between opening and closing marks
    {0x060E, DetectNever},              // accepts no file
    {0x0545, DetectPublisher},          // the name .pub and, in a document, its stream "Contents"
    {0x0513, DetectHgb3},               // "HGB3"
    {0x0516, DetectNever},              // accepts no file
    {0x0512, DetectNever},              // accepts no file
    {0x0536, DetectFilter0536},         // a signature of 17 bytes
    {0x0517, DetectNever},              // accepts no file
    {0x0523, DetectVisio},              // "Visio (TM) Drawing" at the start of an early sector
    {0x0541, DetectSvg},                // "<svg" in the first 2,048 bytes
    {0x0530, DetectDwg},                // "AC1000" to "AC1029"
    {0x0531, DetectMakerVector},        // "MakerVector" at 1
    {0x053B, DetectNever},              // accepts no file
    {0x0617, Detect3dmfOrVrml},         // "3DMF", "#VRML" or "3DMetafile"
    {0x0814, DetectWordDocument8},      // the stream "WordDocument", format version 8
    {0x0801, DetectWordDocument6},      // the stream "WordDocument", format versions 6 and 7
    {0x0802, DetectFilter0802},         // DB A5 2D 00, at least 512 bytes
    {0x0803, DetectFilter0803},         // 31 BE 00 00 00 and, at 96, the word 0
    {0x0804, DetectFilter0804},         // FE 37 and, at 20, 00 00 01 00 or 00 00 02 00
    {0x0805, DetectRtf},                // "{\rtf"
    {0x080B, DetectFilter080B},         // "# VV # 5.0"
    {0x080C, DetectFilter080C},         // the frames of a 128-byte header
    {0x080D, DetectWs2000},             // "WS2000" at 2
    {0x080E, DetectGuillemetCommands},  // two-letter commands between the bytes AE and AF
    {0x080F, DetectVerHeader},          // the line "[ver]", then a tab and 4
    {0x0812, DetectFilter0812},         // a leading record of two kinds
    {0x0813, DetectFilter0813},         // a leading record of three kinds; one more in a stream
    // Plain text, for what no row above has claimed. A full scan answers 0x0903 or 0x0901.
    {0x0903, DetectShortLineText},      // the first 5,000 bytes: text of short lines
    {0x0901, DetectAnyText},            // the first 5,000 bytes: no control characters
    {0x0902, DetectSevenBitText},       // the first 5,000 bytes: ASCII text of short lines
    {0x0904, DetectShortLineText},      // the first 5,000 bytes: text of short lines
    {0x0900, DetectShortLineText},      // the first 5,000 bytes: text of short lines
    // After the text rows: a full scan asks these only about files that are no text.
    {0x060B, DetectHgb1},               // "HGB1"
    {0x0615, DetectHtml},               // "<title>" or "<TITLE>" in the first 1,024 bytes
    {0x0601, DetectWave},               // RIFF form WAVE
    {0x0602, DetectCreativeVoice},      // "Creative Voice File"
    {0x0608, DetectMacBinarySound},     // type "sfil" or creator "jBox" in a MacBinary header
    {0x0609, DetectAiff},               // IFF form AIFF or AIFC
    {0x060A, Detect8Svx},               // IFF form 8SVX
    {0x0611, DetectMidi},               // "MThd" and "MTrk"; RIFF form RMID
    {0x0613, DetectSunAudio},           // ".snd" in either byte order, encoding 1 to 3
    {0x0313, DetectGemImage},           // version 1, a header of 8 or 9 words
    {0x0544, DetectOpsHeader},          // "<!OPS,"
});
// clang-format on

// Identifiers that applications use although no detector yields them. 0x0706 is what a drawing
// object in a compound document is reported as.
constexpr auto IDS_WITHOUT_A_ROW =
    std::to_array<FilterId>({0x050C, 0x0518, 0x0519, 0x0520, 0x0521, 0x0524, 0x053C, 0x053D, 0x053E,
                             0x0543, 0x0706, 0x0708, 0x0709, 0x0800, 0x080A});

// From here on identifiers belong to filters that are installed separately.
constexpr FilterId LAST_RESERVED_ID = 0x3000;

auto FindRow(FilterId filterId) {
  return std::find_if(ROWS.begin(), ROWS.end(),
                      [filterId](const DetectorEntry& row) { return row.filterId == filterId; });
}

}  // namespace

constinit const std::span<const DetectorEntry> DetectorRegistry = ROWS;

std::int32_t DetectNever(const ProbeContext* /*probe*/) { return 0; }

int FindRegistryIndex(FilterId filterId) {
  const auto row = FindRow(filterId);
  return row == ROWS.end() ? 0 : static_cast<int>(row - ROWS.begin());
}

bool IsValidFilterId(FilterId filterId) {
  return filterId > LAST_RESERVED_ID ||
         std::find(IDS_WITHOUT_A_ROW.begin(), IDS_WITHOUT_A_ROW.end(), filterId) !=
             IDS_WITHOUT_A_ROW.end() ||
         FindRow(filterId) != ROWS.end();
}

}  // namespace typescout
