#include "tests/samples/sample.h"

namespace typescout::tests {
namespace {

// A RIFF header whose chunk ends with the form type.
std::string Riff(const std::string& formType) { return "RIFF\x04\0\0\0"s + formType; }

const std::string ZIP = "PK\x03\x04";

// A TIFF file of one directory at 8 that opens with the Software tag; the name follows at 24.
const std::string PAINT_TIFF =
    "II\x2A\0\x08\0\0\0"
    "\x01\0\x31\x01\x02\0\x12\0\0\0\x18\0\0\0"
    "\0\0Tavon PIXEL-FORGE\0"s;

}  // namespace

void NativeSamples(Table& table) {
  table.Add("paint image", 0x0710,
            {"PXF9FILE1", "PXF8FILE1", "PXF7FILE\0", PAINT_TIFF, PAINT_TIFF.substr(0, PAINT_TIFF.size() - 1), Patch(PAINT_TIFF, 41, " 2"),
             Patch(PAINT_TIFF, 0, "AB"), Patch(PAINT_TIFF, 0, "MI"), Patch(PAINT_TIFF, 12, "\x07"), Patch(PAINT_TIFF, 14, "\xFF\xFF\xFF\xFF")},
            {"PXF6FILE1", "PXF9FILE", "PXF8FILE", Patch(PAINT_TIFF, 0, "MM"), Patch(PAINT_TIFF, 2, "\x2B"), Patch(PAINT_TIFF, 3, "\x01"),
             Patch(PAINT_TIFF, 10, "\0\x01"s), Patch(PAINT_TIFF, 11, "\x02"), Patch(PAINT_TIFF, 14, "\x11"), Patch(PAINT_TIFF, 21, "\x01")});
  table.Add("drawing", 0x0703,
            {Riff("VXR9"), Riff("VXT\0"s), Riff("VXST"), Riff("vxst"), Riff("vXrT"), Riff("vxt5"), Named(L"a.vxr", ZIP), Named(L"a.b/c.vxt", ZIP),
             Named(L"a.vxrt", ZIP)},
            {Riff("VXU9"), Patch(Riff("VXR9"), 3, "X"), Named(L"a.vxr", Riff("WAVE")), Named(L"a.vxr.zip", ZIP), Named(L"a.vxr/b", ZIP),
             Named(L"a.vxr", Patch(ZIP, 2, "\x05")), Named(L"a.vxr", "PK\x03")});
  table.Add("TAR form", 0x070A, {Riff("TAR9")}, {Riff("tAR9"), Riff("TAS9"), Riff("TAR"), Patch(Riff("TAR9"), 3, "X")});
  table.Add("technical drawing", 0x070D, {Riff("ZRS1"), Riff("zrs1"), Named(L"a.zrs", ZIP), Named(L"B/A.ZRS", ZIP)},
            {Riff("ZRT1"), Named(L"a.zrs2", ZIP), Named(L"zrs", ZIP), Named(L"a.zrs", "PK\x03\x05")});
  table.Add("symbol library", 0x0712, {Riff("TSL1"), Riff("tsl1"), Named(L"a.tsl", ZIP), Named(L"a.TSL", ZIP)},
            {Riff("TSM1"), Riff("TSL"), Named(L"a.zrs", ZIP)});
  table.Add("VXRCOMP1", 0x0704, {"VXRCOMP1"}, {"VXRCOMP2"});
  table.Add("VXRCOMP2", 0x0705, {"VXRCOMP2"}, {"vxrcomp2"});
  table.Add("BUDI", 0x0713, {}, {"BUDI"});
}

}  // namespace typescout::tests
