#include "modules/camera_raw/beginnings.h"

#include <array>

namespace camera_raw {
namespace {

using std::literals::operator""sv;

struct Row {
  std::size_t offset;
  std::string_view bytes;
  Beginning beginning;
};

// Where nothing else is named, the source is the function identify() of dcraw.c (Dave Coffin,
// dechifro.org/dcraw), from which LibRaw took over how it tells the kinds apart. Not here: JPEG
// files with a raw picture behind their end, AVI and QuickTime films, and what is known by its size
// alone.
constexpr auto ROWS = std::to_array<Row>({
    // TIFF 6.0, section 2. DNG (Adobe, DNG 1.7), TIFF/EP (ISO 12234-2) and the makers' kinds that
    // follow it: ARW, CR2, ERF, IIQ, NEF, PEF, SRW and others.
    {0, "II*\0"sv, Beginning::TIFF},
    {0, "MM\0*"sv, Beginning::TIFF},
    // Panasonic and Leica. exiftool.org/TagNames/PanasonicRaw.html
    {0, "IIU\0"sv, Beginning::CAMERA},
    // Olympus ORF. fileformats.archiveteam.org/wiki/Olympus_ORF
    {0, "IIRO"sv, Beginning::CAMERA},
    {0, "IIRS"sv, Beginning::CAMERA},
    {0, "MMOR"sv, Beginning::CAMERA},
    // Canon CRW. CIFF, version 1.0 revision 4 (Canon, 1997), section 3
    {6, "HEAPCCDR"sv, Beginning::CAMERA},
    // Canon CR3. github.com/lclevy/canon_cr3
    {4, "ftypcrx "sv, Beginning::CAMERA},
    // Fujifilm RAF. fileformats.archiveteam.org/wiki/Fujifilm_RAF
    {0, "FUJIFILMCCD-RAW "sv, Beginning::CAMERA},
    // Minolta MRW. dalibor.cz/software/minolta-raw-mrw-file-format
    {0, "\0MRM"sv, Beginning::CAMERA},
    // Sigma and Foveon X3F. X3F raw file format description (Foveon, 2003)
    {0, "FOVb"sv, Beginning::CAMERA},
    // Phantom cine. Cine file format (Vision Research), header of 44 bytes
    {0, "CI,\0"sv, Beginning::CAMERA},
    // ARRIRAW. SMPTE RDD 30
    {0, "ARRI"sv, Beginning::CAMERA},
    // Apple QuickTake 100 and 150. fileformats.archiveteam.org/wiki/QuickTake
    {0, "qktk\0"sv, Beginning::CAMERA},
    {0, "qktn\0"sv, Beginning::CAMERA},
    // Phase One
    {0, "IIII"sv, Beginning::CAMERA},
    {0, "MMMM"sv, Beginning::CAMERA},
    // Contax N Digital
    {25, "ARECOYK"sv, Beginning::CAMERA},
    // Nokia
    {0, "NOKIARAW"sv, Beginning::CAMERA},
    {0, "\0\1\0\1\0@"sv, Beginning::CAMERA},
    // Canon RMF
    {0, "XPDS"sv, Beginning::CAMERA},
    // Rollei d530flex
    {0, "DSC-Image"sv, Beginning::CAMERA},
    // Sinar
    {0, "PWAD"sv, Beginning::CAMERA},
    // Logitech Fotoman
    {0, "PXN\0"sv, Beginning::CAMERA},
});

}  // namespace

Beginning IdentifyBeginning(std::string_view head) {
  for (const Row& row : ROWS) {
    // Mostly the first byte is another, and this is asked for every file.
    if (head[row.offset] != row.bytes.front()) continue;
    if (head.substr(row.offset, row.bytes.size()) == row.bytes) return row.beginning;
  }
  return Beginning::OTHER;
}

}  // namespace camera_raw
