#include "detectors/native/native.h"

#include "tests/samples/sample.h"

namespace typescout::tests {
namespace {

// A RIFF header whose chunk ends with the form type.
std::string Riff(const std::string& formType) { return Bytes("RIFF\x04\0\0\0") + formType; }

const std::string ZIP = Bytes("PK\x03\x04");

// A TIFF file of one directory at 8 that opens with the Software tag; the name follows at 24.
const std::string PAINT_TIFF = Bytes(
    "II\x2A\0\x08\0\0\0"
    "\x01\0\x31\x01\x02\0\x12\0\0\0\x18\0\0\0"
    "\0\0Tavon PIXEL-FORGE\0");

}  // namespace

std::vector<Sample> NativeSamples() {
  return {
      {"PXF9", DetectPaintImage, "PXF9FILE1", YES},
      {"PXF8", DetectPaintImage, "PXF8FILE1", YES},
      {"PXF7", DetectPaintImage, Bytes("PXF7FILE\0"), YES},
      {"PXF6", DetectPaintImage, "PXF6FILE1", NO},
      {"PXF9 cut to 8 bytes", DetectPaintImage, "PXF9FILE", NO},
      {"PXF8 cut to 8 bytes", DetectPaintImage, "PXF8FILE", NO},

      {"TIFF of the paint program", DetectPaintImage, PAINT_TIFF, YES},
      {"paint TIFF without its last zero", DetectPaintImage, PAINT_TIFF.substr(0, PAINT_TIFF.size() - 1), YES},
      {"paint TIFF with a later version's name", DetectPaintImage, Patch(PAINT_TIFF, 41, " 2"), YES},
      {"paint TIFF with another byte order mark", DetectPaintImage, Patch(PAINT_TIFF, 0, "AB"), YES},
      {"paint TIFF opening with MI", DetectPaintImage, Patch(PAINT_TIFF, 0, "MI"), YES},
      {"paint TIFF opening with MM", DetectPaintImage, Patch(PAINT_TIFF, 0, "MM"), NO},
      {"paint TIFF of version 43", DetectPaintImage, Patch(PAINT_TIFF, 2, "\x2B"), NO},
      {"paint TIFF with a version of two bytes", DetectPaintImage, Patch(PAINT_TIFF, 3, "\x01"), NO},
      {"paint TIFF opening with the width tag", DetectPaintImage, Patch(PAINT_TIFF, 10, Bytes("\0\x01")), NO},
      {"paint TIFF opening with tag 0x0231", DetectPaintImage, Patch(PAINT_TIFF, 11, "\x02"), NO},
      {"paint TIFF with another field type", DetectPaintImage, Patch(PAINT_TIFF, 12, "\x07"), YES},
      {"paint TIFF with a count of 17", DetectPaintImage, Patch(PAINT_TIFF, 14, "\x11"), NO},
      {"paint TIFF with the largest count", DetectPaintImage, Patch(PAINT_TIFF, 14, "\xFF\xFF\xFF\xFF"), YES},
      {"paint TIFF whose name is beyond the end", DetectPaintImage, Patch(PAINT_TIFF, 21, "\x01"), NO},

      {"drawing VXR", DetectNativeDrawing, Riff("VXR9"), YES},
      {"drawing VXT", DetectNativeDrawing, Riff(Bytes("VXT\0")), YES},
      {"drawing VXST", DetectNativeDrawing, Riff("VXST"), YES},
      {"drawing vxst", DetectNativeDrawing, Riff("vxst"), YES},
      {"drawing vXrT", DetectNativeDrawing, Riff("vXrT"), YES},
      {"drawing vxt", DetectNativeDrawing, Riff("vxt5"), YES},
      {"RIFF VXU", DetectNativeDrawing, Riff("VXU9"), NO},
      {"RIFX VXR", DetectNativeDrawing, Patch(Riff("VXR9"), 3, "X"), NO},
      {"RIFF of another form named as a drawing", DetectNativeDrawing, Riff("WAVE"), NO, L"a.vxr"},
      {"drawing ZIP .vxr", DetectNativeDrawing, ZIP, YES, L"a.vxr"},
      {"drawing ZIP .vxt", DetectNativeDrawing, ZIP, YES, L"a.b/c.vxt"},
      {"drawing ZIP .vxrt", DetectNativeDrawing, ZIP, YES, L"a.vxrt"},
      {"ZIP .zip", DetectNativeDrawing, ZIP, NO, L"a.vxr.zip"},
      {"ZIP without an extension", DetectNativeDrawing, ZIP, NO, L"a.vxr/b"},
      {"drawing ZIP with another third byte", DetectNativeDrawing, Patch(ZIP, 2, "\x05"), NO, L"a.vxr"},
      {"drawing ZIP cut to 3 bytes", DetectNativeDrawing, "PK\x03", NO, L"a.vxr"},

      {"RIFF TAR", DetectTarForm, Riff("TAR9"), YES},
      {"RIFF tar", DetectTarForm, Riff("tAR9"), NO},
      {"RIFF TAS", DetectTarForm, Riff("TAS9"), NO},
      {"RIFF TAR cut to 11 bytes", DetectTarForm, Riff("TAR"), NO},
      {"RIFX TAR", DetectTarForm, Patch(Riff("TAR9"), 3, "X"), NO},

      {"technical drawing ZRS", DetectTechnicalDrawing, Riff("ZRS1"), YES},
      {"technical drawing zrs", DetectTechnicalDrawing, Riff("zrs1"), YES},
      {"RIFF ZRT", DetectTechnicalDrawing, Riff("ZRT1"), NO},
      {"ZIP .zrs", DetectTechnicalDrawing, ZIP, YES, L"a.zrs"},
      {"ZIP .ZRS", DetectTechnicalDrawing, ZIP, YES, L"B/A.ZRS"},
      {"ZIP .zrs2", DetectTechnicalDrawing, ZIP, NO, L"a.zrs2"},
      {"ZIP named zrs", DetectTechnicalDrawing, ZIP, NO, L"zrs"},
      {"text .zrs", DetectTechnicalDrawing, "PK\x03\x05", NO, L"a.zrs"},

      {"symbol library TSL", DetectSymbolLibrary, Riff("TSL1"), YES},
      {"symbol library tsl", DetectSymbolLibrary, Riff("tsl1"), YES},
      {"RIFF TSM", DetectSymbolLibrary, Riff("TSM1"), NO},
      {"symbol library cut to 11 bytes", DetectSymbolLibrary, Riff("TSL"), NO},
      {"ZIP .tsl", DetectSymbolLibrary, ZIP, YES, L"a.tsl"},
      {"ZIP .TSL", DetectSymbolLibrary, ZIP, YES, L"a.TSL"},
      {"ZIP .zrs for a symbol library", DetectSymbolLibrary, ZIP, NO, L"a.zrs"},

      {"VXRCOMP1", DetectVxrComp1, "VXRCOMP1", YES},
      {"VXRCOMP2 for VXRCOMP1", DetectVxrComp1, "VXRCOMP2", NO},
      {"VXRCOMP2", DetectVxrComp2, "VXRCOMP2", YES},
      {"VXRCOMP2 in lower case", DetectVxrComp2, "vxrcomp2", NO},

      {"BUDI without a graphics library", DetectBudi, "BUDI", NO},
  };
}

}  // namespace typescout::tests
