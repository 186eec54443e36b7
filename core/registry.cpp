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

// clang-format off
constexpr auto ROWS = std::to_array<DetectorEntry>({
    // The first row never matches: identifiers that the registry does not know map to it.
    {0x0700, DetectNever},              // never reported
    {0x0707, DetectNever},              // never reported
    // The paint program's TIFF files are claimed before any raster row sees them.
    {0x0710, DetectPaintImage},         // paint program image (native, or its TIFF)
    {0x0301, DetectWindowsBitmap},      // Windows bitmap (40-byte header)
    {0x0305, DetectGif},                // GIF with one image
    // Says yes to TIFF headers too and is asked before the TIFF row: a full scan calls every TIFF 0x0306.
    {0x0306, DetectJpeg},               // JPEG (and TIFF headers)
    {0x0318, DetectOs2Bitmap},          // OS/2 bitmap
    {0x0509, DetectEps},                // Encapsulated PostScript
    {0x0334, DetectJpeg2000},           // JPEG 2000
    {0x0703, DetectNativeDrawing},      // the suite's drawing format
    {0x070A, DetectTarForm},            // suite-native RIFF form "TAR"
    {0x070D, DetectTechnicalDrawing},   // technical-drawing file
    {0x0712, DetectSymbolLibrary},      // symbol library
    // PostScript jobs before Illustrator documents: each asks DetectIllustrator itself and steps aside.
    {0x050A, DetectPostScript},         // PostScript job
    {0x0704, DetectVxrComp1},           // "VXRCOMP1" format
    {0x0705, DetectVxrComp2},           // "VXRCOMP2" format
    // One detector, three filters: a full scan answers 0x0713, the other two are for list checks.
    {0x0713, DetectBudi},               // BUDI file
    {0x0701, DetectBudi},               // BUDI file
    {0x0702, DetectBudi},               // BUDI file
    {0x0535, DetectIllustratorPdf},     // PDF with Illustrator data
    {0x0503, DetectIllustrator},        // Illustrator document (PostScript-based)
    {0x0507, DetectScriptoraGraphics},  // word-processor graphics (QLX header or stream)
    {0x050E, DetectWindowsMetafile},    // Windows metafile
    {0x0540, DetectFilter0540},         // format with a complemented header
    {0x0807, DetectScriptora0807},      // word-processor document, major version 2
    {0x0808, DetectScriptora0808},      // word-processor document, version 0.1
    {0x0809, DetectScriptora0809},      // word-processor document, version 0.0
    // TGA has no magic number: icons, cursors and MPEG start codes satisfy it before their own rows.
    {0x0303, DetectTarga},              // Truevision TGA
    {0x0302, DetectPcx},                // PCX
    {0x0308, DetectScitexCt},           // Scitex CT
    {0x0304, DetectTiff},               // TIFF
    // Each of the three says yes to Windows executables; cursors are asked first.
    {0x0311, DetectCursorResource},     // Windows cursor or executable
    {0x0310, DetectIconResource},       // Windows icon or executable
    {0x0312, DetectExecutableResource}, // Windows executable
    {0x0314, DetectPhotoshop},          // Photoshop
    {0x0337, DetectCameraRaw},          // camera raw
    {0x0317, DetectMacPaint},           // MacPaint
    {0x0320, DetectFilter0320},         // format opening with "srcdocid"
    {0x0324, DetectPaintEps},           // EPS written by the paint program
    {0x0321, DetectNever},              // never reported
    {0x0322, DetectPng},                // PNG
    // WebP stands twice, here and six rows on; look-ups find this one.
    {0x0339, DetectWebP},               // WebP
    {0x0325, DetectNever},              // never reported
    {0x0327, DetectFilter0327},         // format with version word and 1.8 at 40
    {0x0329, DetectXpm},                // XPM
    {0x0330, DetectGimpXcf},            // GIMP XCF
    {0x0331, DetectPortableAnymap},     // Netpbm (P1 to P6)
    {0x0339, DetectWebP},               // WebP
    {0x0600, DetectAvi},                // AVI
    {0x0607, DetectFlic},               // FLIC animation
    {0x060F, DetectMpeg},               // MPEG
    {0x0610, DetectNever},              // never reported
    {0x0614, DetectAnimatedCursor},     // Windows animated cursor
    {0x0616, DetectAnimatedGif},        // animated GIF
    {0x0504, DetectFilter0504},         // format recognised by its header
    // One detector, two filters: a full scan answers 0x0500.
    {0x0500, DetectCgm},                // CGM
    {0x090B, DetectCgm},                // CGM
    {0x0502, DetectFilter0502},         // format recognised by its header
    {0x0510, DetectDxf},                // DXF
    // The detector of 0x050A again, for list checks.
    {0x0515, DetectPostScript},         // PostScript job
    {0x0501, DetectHpgl},               // HP-GL plotter file
    {0x050B, DetectFilter050B},         // format recognised by three bytes at 2
    {0x050D, DetectPict},               // Macintosh PICT
    {0x0514, DetectEnhancedMetafile},   // Enhanced metafile
    {0x050F, DetectTavonMetafile},      // the suite's metafile
    {0x0505, DetectFilter0505},         // record stream recognised by a walk
    {0x060E, DetectNever},              // never reported
    {0x0545, DetectPublisher},          // Publisher document
    {0x0513, DetectHgb3},               // format opening with "HGB3"
    {0x0516, DetectNever},              // never reported
    {0x0512, DetectNever},              // never reported
    {0x0536, DetectFilter0536},         // format with a 17-byte signature
    {0x0517, DetectNever},              // never reported
    {0x0523, DetectVisio},              // Visio drawing
    {0x0541, DetectSvg},                // SVG
    {0x0530, DetectDwg},                // DWG drawing
    {0x0531, DetectMakerVector},        // vector file naming "MakerVector"
    {0x053B, DetectNever},              // never reported
    {0x0617, Detect3dmfOrVrml},         // 3DMF or VRML
    {0x0814, DetectWordDocument8},      // Word binary document, version 8
    {0x0801, DetectWordDocument6},      // Word binary document, version 6 or 7
    {0x0802, DetectFilter0802},         // format recognised by its header
    {0x0803, DetectFilter0803},         // format recognised by its header
    {0x0804, DetectFilter0804},         // format recognised by its header
    {0x0805, DetectRtf},                // RTF
    {0x080B, DetectFilter080B},         // text opening with "# VV # 5.0"
    {0x080C, DetectFilter080C},         // format with a framed 128-byte header
    {0x080D, DetectWs2000},             // document naming "WS2000"
    {0x080E, DetectGuillemetCommands},  // text with commands between 0xAE and 0xAF
    {0x080F, DetectVerHeader},          // text opening with a "[ver]" line
    {0x0812, DetectFilter0812},         // format recognised by a leading record
    {0x0813, DetectFilter0813},         // format recognised by a leading record
    // Plain text, for what no row above has claimed. A full scan answers 0x0903 or 0x0901.
    {0x0903, DetectShortLineText},      // plain text (short-line classes)
    {0x0901, DetectAnyText},            // plain text (any class)
    {0x0902, DetectSevenBitText},       // plain text (seven-bit class)
    {0x0904, DetectShortLineText},      // plain text (short-line classes)
    {0x0900, DetectShortLineText},      // plain text (short-line classes)
    // Behind the text rows: what is text for them never gets here.
    {0x060B, DetectHgb1},               // format opening with "HGB1"
    {0x0615, DetectHtml},               // HTML
    {0x0601, DetectWave},               // WAVE
    {0x0602, DetectCreativeVoice},      // Creative Voice
    {0x0608, DetectMacBinarySound},     // Macintosh sound (MacBinary)
    {0x0609, DetectAiff},               // AIFF / AIFF-C
    {0x060A, Detect8Svx},               // IFF 8SVX
    {0x0611, DetectMidi},               // MIDI
    {0x0613, DetectSunAudio},           // Sun/NeXT audio
    {0x0313, DetectGemImage},           // GEM bit image
    {0x0544, DetectOpsHeader},          // text opening with "<!OPS,"
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
