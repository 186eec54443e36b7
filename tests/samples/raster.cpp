#include "detectors/raster/raster.h"

#include <iterator>

#include "tests/samples/sample.h"

namespace typescout::tests {
namespace {

// `bytes` zero bytes with `patch` at `at`.
std::string With(std::size_t size, std::size_t at, const std::string& patch) { return Patch(Fill(size), at, patch); }

// "BM", and at 14 the size of the header that follows.
std::string Bitmap(std::size_t size, const std::string& headerSize) { return PadTo(size, Patch("BM", 14, headerSize)); }

std::string Targa(char colourMapType, char imageType) { return std::string{'\xFF', colourMapType, imageType, '\0'}; }

std::string ScitexCt(char units, char at1027, char direction) {
  std::string bytes = With(1081, 80, "CT");
  bytes[1024] = units;
  bytes[1027] = at1027;
  bytes[1080] = direction;
  return bytes;
}

std::string GemImage(const std::string& header, const std::string& lastWord) { return Patch(PadTo(16, header), 16, lastWord); }

// An executable whose new header stands at `header`.
std::string Executable(const std::string& offset, std::size_t header, const std::string& signature) {
  return Patch(Patch("MZ", 60, offset), header, signature);
}

std::string NewExecutable(char target, const std::string& windowsVersion) {
  std::string header = "NE";
  header = Patch(header, 54, std::string(1, target));
  return Executable(Bytes("\x80\0"), 0x80, Patch(header, 62, windowsVersion));
}

std::string MacPaint(const std::string& packets) { return Patch(Fill(512), 512, packets); }

std::string WrappedMacPaint(const std::string& fileType, const std::string& packets) { return Patch(With(640, 65, fileType), 640, packets); }

// A GIF's signature and screen descriptor, with these flags.
std::string Gif(char flags = '\0') { return PadTo(13, Patch("GIF89a", 10, {flags})); }

// A picture: its descriptor with these flags, a colour table of `table` bytes, the minimum code
// size and one sub-block of data.
std::string Picture(char flags = '\0', std::size_t table = 0) { return PadTo(9, ",") + flags + Fill(table, ';') + "\x08" + Bytes("\x02\x4C\x01\0"); }

const std::string CONTROL = Bytes("!\xF9\x04\0\0\0\0\0");
const std::string TRAILER = ";";

// A start of image, and a frame header with this many components.
std::string Frame(char code, char components) { return Bytes("\xFF") + code + Bytes("\0\x0B\x08\0\x10\0\x10") + components; }

const std::string SOI = "\xFF\xD8";
const std::string EOI = "\xFF\xD9";
const std::string BASELINE = Frame('\xC0', 3);
const std::string PROGRESSIVE = Frame('\xC2', 3);

// A segment of this marker whose length field says `length`, with as many bytes as it says.
std::string Segment(char code, char length) { return PadTo(static_cast<std::size_t>(length) + 2, std::string{'\xFF', code, '\0', length}); }

// PostScript that the paint program wrote: `creator` follows the comment that has to be there.
std::string PaintEps(const std::string& creator) { return "%!PS\n%%BoundingBox: 0 0 9 9\n%%Creator: " + creator; }

const std::string DOS_EPS = "\xC5\xD0\xD3\xC6";

std::vector<Sample> SignatureSamples() {
  return {
      {"BMP", DetectWindowsBitmap, Bitmap(18, Bytes("\x28\0\0\0")), YES},
      {"BMP of 16 bytes", DetectWindowsBitmap, Bitmap(16, Bytes("\x28\0")), YES},
      {"BMP of 15 bytes", DetectWindowsBitmap, Bitmap(15, Bytes("\x28")), NO},
      {"BMP with a header of 41", DetectWindowsBitmap, Bitmap(18, Bytes("\x29\0\0\0")), NO},
      {"BMP called BN", DetectWindowsBitmap, Patch(Bitmap(18, "\x28"), 0, "BN"), NO},

      {"OS/2 BMP 1", DetectOs2Bitmap, Bitmap(18, Bytes("\x0C\0\0\0")), YES},
      {"OS/2 BMP 2", DetectOs2Bitmap, Bitmap(16, Bytes("\x40\0")), YES},
      {"OS/2 BMP of 15 bytes", DetectOs2Bitmap, Bitmap(15, Bytes("\x0C")), NO},
      {"OS/2 BMP with a header of 13", DetectOs2Bitmap, Bitmap(18, "\x0D"), NO},
      {"OS/2 BMP with a header of 11", DetectOs2Bitmap, Bitmap(18, "\x0B"), NO},
      {"OS/2 BMP with a header of 63", DetectOs2Bitmap, Bitmap(18, "\x3F"), NO},
      {"OS/2 BMP with a header of 65", DetectOs2Bitmap, Bitmap(18, "\x41"), NO},
      {"OS/2 BMP called CM", DetectOs2Bitmap, Patch(Bitmap(18, "\x0C"), 0, "CM"), NO},

      {"JP2", DetectJpeg2000, Bytes("\0\0\0\x0CjP  \r\n\x87\n\0\0"), YES},
      {"JP2 of 13 bytes", DetectJpeg2000, Bytes("\0\0\0\x0CjP  \r\n\x87\n\0"), NO},
      {"JP2 mangled by text mode", DetectJpeg2000, Bytes("\0\0\0\x0CjP  \n\x87\n\0\0\0"), NO},
      {"JP2 with another last byte", DetectJpeg2000, Bytes("\0\0\0\x0CjP  \r\n\x87\r\0\0"), NO},
      {"J2K", DetectJpeg2000, Bytes("\xFFO\xFFQ\0\0"), YES},
      {"J2K of 5 bytes", DetectJpeg2000, Bytes("\xFFO\xFFQ\0"), NO},

      {"TGA colour-mapped", DetectTarga, Targa(1, 1), YES},
      {"TGA true colour", DetectTarga, Targa(0, 2), YES},
      {"TGA grey", DetectTarga, Targa(0, 3), YES},
      {"TGA run-length colour-mapped", DetectTarga, Targa(1, 9), YES},
      {"TGA run-length grey", DetectTarga, Targa(0, 11), YES},
      {"TGA without a picture", DetectTarga, Targa(0, 0), NO},
      {"TGA type 4", DetectTarga, Targa(0, 4), NO},
      {"TGA type 8", DetectTarga, Targa(0, 8), NO},
      {"TGA type 12", DetectTarga, Targa(0, 12), NO},
      {"TGA type 32", DetectTarga, Targa(0, 32), NO},
      {"TGA colour map 2", DetectTarga, Targa(2, 1), NO},
      {"TGA of 3 bytes", DetectTarga, Bytes("\0\0\2"), NO},

      {"PCX 2.5", DetectPcx, Bytes("\x0A\0\1"), YES},
      {"PCX 2.8", DetectPcx, Bytes("\x0A\2\1"), YES},
      {"PCX 2.8 without a palette", DetectPcx, Bytes("\x0A\3\1"), YES},
      {"PCX 3.0", DetectPcx, Bytes("\x0A\5\1"), YES},
      {"PCX version 1", DetectPcx, Bytes("\x0A\1\1"), NO},
      {"PCX version 4", DetectPcx, Bytes("\x0A\4\1"), NO},
      {"PCX version 6", DetectPcx, Bytes("\x0A\6\1"), NO},
      {"PCX unpacked", DetectPcx, Bytes("\x0A\5\0"), NO},
      {"PCX of another maker", DetectPcx, Bytes("\x0B\5\1"), NO},
      {"PCX of 2 bytes", DetectPcx, Bytes("\x0A\5"), NO},

      {"Scitex CT", DetectScitexCt, ScitexCt(0, 0, 0), YES},
      {"Scitex CT at its limits", DetectScitexCt, ScitexCt(1, 15, 7), YES},
      {"Scitex CT with unit 2", DetectScitexCt, ScitexCt(2, 15, 7), NO},
      {"Scitex CT with 16 at 1027", DetectScitexCt, ScitexCt(1, 16, 7), NO},
      {"Scitex CT with direction 8", DetectScitexCt, ScitexCt(1, 15, 8), NO},
      {"Scitex CT of 1,080 bytes", DetectScitexCt, PadTo(1080, ScitexCt(0, 0, 0)), NO},
      {"Scitex LW", DetectScitexCt, Patch(ScitexCt(0, 0, 0), 80, "LW"), NO},
      {"Scitex CT one byte late", DetectScitexCt, Patch(ScitexCt(0, 0, 0), 80, Bytes("\0CT")), NO},

      {"cursor", DetectCursorResource, Bytes("\0\0\2"), YES},
      {"cursor called an icon", DetectCursorResource, Bytes("\0\0\1"), NO},
      {"cursor with a reserved word", DetectCursorResource, Bytes("\0\1\2"), NO},
      {"icon", DetectIconResource, Bytes("\0\0\1"), YES},
      {"icon called a cursor", DetectIconResource, Bytes("\0\0\2"), NO},
      {"icon with a reserved byte", DetectIconResource, Bytes("\1\0\1"), NO},
      {"icons in an executable", DetectIconResource, Executable(Bytes("\x40\0"), 64, "PE"), YES},
      {"cursors in an executable", DetectCursorResource, Executable(Bytes("\x40\0"), 64, "PE"), YES},

      {"PE", DetectExecutableResource, Executable(Bytes("\x80\0\0\0"), 128, Bytes("PE\0\0")), YES},
      {"PE with an offset above 65,535", DetectExecutableResource, Executable(Bytes("\x80\0\1\0"), 128, Bytes("PE\0\0")), YES},
      {"PE at a high offset", DetectExecutableResource, Executable(Bytes("\0\2"), 512, "PE"), YES},
      {"PE with a third letter", DetectExecutableResource, Executable("\x80", 128, "PEx"), NO},
      {"executable without a new header", DetectExecutableResource, PadTo(64, Executable("\x40", 61, "")), NO},
      {"executable called ZM", DetectExecutableResource, Patch(Executable("\x80", 128, "PE"), 0, "ZM"), NO},
      {"NE for Windows 3.0", DetectExecutableResource, NewExecutable(2, Bytes("\0\3")), YES},
      {"NE for Windows 3.10", DetectExecutableResource, NewExecutable(2, Bytes("\x0A\3")), YES},
      {"NE for Windows 2.255", DetectExecutableResource, NewExecutable(2, Bytes("\xFF\2")), NO},
      {"NE for OS/2", DetectExecutableResource, NewExecutable(1, Bytes("\0\3")), NO},
      {"NE for Windows 386", DetectExecutableResource, NewExecutable(4, Bytes("\0\3")), NO},
      {"NE cut before its version", DetectExecutableResource, PadTo(128 + 63, NewExecutable(2, Bytes("\0\3"))), NO},
      {"LE", DetectExecutableResource, Executable("\x80", 128, "LE"), NO},

      {"PSD", DetectPhotoshop, Bytes("8BPS\0"), YES},
      {"PSD of 4 bytes", DetectPhotoshop, Bytes("8BPS"), NO},
      {"PSD in lower case", DetectPhotoshop, Bytes("8bps\0"), NO},
      {"PSD called 8BPT", DetectPhotoshop, Bytes("8BPT\0"), NO},

      {"srcdocid", DetectFilter0320, Bytes("srcdocid\0"), YES},
      {"srcdocid of 8 bytes", DetectFilter0320, Bytes("srcdocid"), NO},
      {"srcdocix", DetectFilter0320, Bytes("srcdocix\0"), NO},

      {"PNG signature", DetectPng, Bytes("\x89PNG\r\n\x1A\n"), YES},
      {"PNG mangled by text mode", DetectPng, Bytes("\x89PNG\n\x1A\n\n"), NO},
      {"PNG cut to 7 bytes", DetectPng, Bytes("\x89PNG\r\n\x1A"), NO},
      {"PNG stripped to 7 bits", DetectPng, Bytes("\x09PNG\r\n\x1A\n"), NO},

      {"WebP", DetectWebP, Bytes("RIFF\0\0\0\0WEBPV"), YES},
      {"WebP of any size", DetectWebP, Bytes("RIFF\x12\x34\x56\x78WEBP\0"), YES},
      {"WebP of 12 bytes", DetectWebP, Bytes("RIFF\0\0\0\0WEBP"), NO},
      {"WebP called WEBQ", DetectWebP, Bytes("RIFF\0\0\0\0WEBQV"), NO},
      {"WebP in RIFX", DetectWebP, Bytes("RIFX\0\0\0\0WEBPV"), NO},

      {"0327", DetectFilter0327, With(44, 1, "\2").replace(40, 4, "\x3F\xE6\x66\x66"), YES},
      {"0327 with version 3", DetectFilter0327, With(44, 1, "\3").replace(40, 4, "\x3F\xE6\x66\x66"), NO},
      {"0327 with version 258", DetectFilter0327, With(44, 0, "\1\2").replace(40, 4, "\x3F\xE6\x66\x66"), NO},
      {"0327 with 1.7", DetectFilter0327, With(44, 1, "\2").replace(40, 4, "\x3F\xD9\x99\x9A"), NO},
      {"0327 with a little more than 1.8", DetectFilter0327, With(44, 1, "\2").replace(40, 4, "\x3F\xE6\x66\x67"), NO},

      {"XPM", DetectXpm, Bytes("/* XPM */"), YES},
      {"XPM without spaces", DetectXpm, Bytes("/*XPM*/\n\n"), NO},
      {"XPM of 8 bytes", DetectXpm, Bytes("/* XPM *"), NO},

      {"XCF", DetectGimpXcf, Bytes("gimp xcf "), YES},
      {"XCF of 8 bytes", DetectGimpXcf, Bytes("gimp xcf"), NO},

      {"PBM plain", DetectPortableAnymap, Bytes("P1"), YES},
      {"PPM raw", DetectPortableAnymap, Bytes("P6"), YES},
      {"P0", DetectPortableAnymap, Bytes("P0"), NO},
      {"PAM", DetectPortableAnymap, Bytes("P7"), NO},
      {"p6", DetectPortableAnymap, Bytes("p6"), NO},
      {"P", DetectPortableAnymap, Bytes("P"), NO},

      {"GEM of 8 words", DetectGemImage, GemImage(Bytes("\0\1\0\x08"), Bytes("\x40\4")), YES},
      {"GEM of 9 words", DetectGemImage, GemImage(Bytes("\0\1\0\x09"), Bytes("\0\3")), YES},
      {"GEM of 9 words, bit 7", DetectGemImage, GemImage(Bytes("\0\1\0\x09"), Bytes("\x80\3")), YES},
      {"GEM of 9 words, all high bits", DetectGemImage, GemImage(Bytes("\0\1\0\x09"), Bytes("\xFF\0")), YES},
      {"GEM of 9 words, bit 6", DetectGemImage, GemImage(Bytes("\0\1\0\x09"), Bytes("\x40\0")), NO},
      {"GEM of 9 words, bit 0", DetectGemImage, GemImage(Bytes("\0\1\0\x09"), Bytes("\1\0")), NO},
      {"GEM of 9 words, 4", DetectGemImage, GemImage(Bytes("\0\1\0\x09"), Bytes("\0\4")), NO},
      {"GEM of 7 words", DetectGemImage, GemImage(Bytes("\0\1\0\x07"), Bytes("\0\0")), NO},
      {"GEM of 264 words", DetectGemImage, GemImage(Bytes("\0\1\1\x08"), Bytes("\0\0")), NO},
      {"GEM version 2", DetectGemImage, GemImage(Bytes("\0\2\0\x08"), Bytes("\0\0")), NO},
      {"GEM version 257", DetectGemImage, GemImage(Bytes("\1\1\0\x08"), Bytes("\0\0")), NO},
      {"GEM with a long pattern", DetectGemImage, GemImage(Bytes("\0\1\0\x08\0\1\1"), Bytes("\0\0")), NO},
      {"GEM with a pattern of 255", DetectGemImage, GemImage(Bytes("\0\1\0\x08\0\1\0\xFF"), Bytes("\0\0")), YES},
      {"GEM of 17 bytes", DetectGemImage, GemImage(Bytes("\0\1\0\x08"), Bytes("\0")), NO},
  };
}

std::vector<Sample> MacPaintSamples() {
  const std::string line = "\x47" + Fill(72, 'x');  // one literal of 72 bytes
  const std::string run = Bytes("\xB9\0");          // one run of 72 bytes
  return {
      {"MacPaint, one literal", DetectMacPaint, MacPaint(line), YES},
      {"MacPaint, one run", DetectMacPaint, MacPaint(run), YES},
      {"MacPaint, literal and run", DetectMacPaint, MacPaint("\x22" + Fill(35, 'x') + Bytes("\xDC\0")), YES},
      {"MacPaint, runs and literal", DetectMacPaint, MacPaint(Bytes("\xFF\0\xFF\0") + "\x43" + Fill(68, 'x')), YES},
      {"MacPaint, literals around a run", DetectMacPaint, MacPaint("\x21" + Fill(34, 'x') + Bytes("\xFD\0") + "\x21" + Fill(34, 'x')), YES},
      {"MacPaint, two literals", DetectMacPaint, MacPaint("\x23" + Fill(36, 'x') + "\x23" + Fill(36, 'x')), NO},
      {"MacPaint, a run of 71 and a literal of 2", DetectMacPaint, MacPaint(Bytes("\xBA\0\1xx")), NO},
      {"MacPaint, a run of 129", DetectMacPaint, MacPaint(Bytes("\x80\0")), NO},
      {"MacPaint that begins with 1", DetectMacPaint, Patch(MacPaint(line), 0, "\1"), NO},
      {"MacPaint cut before its picture", DetectMacPaint, Fill(512), NO},
      {"MacPaint behind MacBinary", DetectMacPaint, WrappedMacPaint("PNTG", line), YES},
      {"MacPaint behind MacBinary, at 512", DetectMacPaint, Patch(WrappedMacPaint("PNTG", ""), 512, run), NO},
      {"MacBinary of another type", DetectMacPaint, WrappedMacPaint("PNTH", line), NO},
  };
}

std::vector<Sample> GifSamples() {
  const std::string chain = Bytes("\1x\2xx\0");
  const auto still = [](const std::string& blocks) { return Gif() + blocks + Picture() + TRAILER; };
  const auto two = [](const std::string& between) { return Gif() + Picture() + between + Picture() + TRAILER; };
  return {
      {"GIF", DetectGif, still(""), YES},
      {"GIF87a", DetectGif, Patch(still(""), 0, "GIF87a"), YES},
      {"GIF88a", DetectGif, Patch(still(""), 0, "GIF88a"), NO},
      {"GIF in lower case", DetectGif, Patch(still(""), 0, "gif89a"), NO},
      {"GIF with a table of 6", DetectGif, Gif('\x80') + Fill(6, ';') + Picture(), YES},
      {"GIF with a table of 768", DetectGif, Gif('\x87') + Fill(768, ';') + Picture(), YES},
      {"GIF with table bits but no table", DetectGif, Gif('\x07') + Picture(), YES},
      {"GIF with a local table", DetectGif, Gif() + Picture('\x81', 12) + TRAILER, YES},
      {"GIF with a local table and a second picture", DetectAnimatedGif, Gif() + Picture('\x87', 768) + Picture(), YES},
      {"GIF with local table bits but no table", DetectAnimatedGif, Gif() + Picture('\x07') + Picture(), YES},
      {"GIF without a picture", DetectGif, Gif() + TRAILER, NO},
      {"GIF cut behind the introducer of its picture", DetectGif, Gif() + ",", YES},
      {"GIF cut in its data", DetectGif, Gif() + PadTo(10, ",") + "\x08\xFFxxx", YES},
      {"GIF with a control extension", DetectGif, still(CONTROL), YES},
      {"GIF with a comment", DetectGif, still("!\xFE" + chain), YES},
      {"GIF with an application extension", DetectGif, still("!\xFF\x0BNETSCAPE2.0" + chain), YES},
      {"GIF with a short application extension", DetectGif, still("!\xFF" + Bytes("\0") + chain), YES},
      {"GIF with an application extension of 128", DetectGif, still("!\xFF\x80" + Fill(128, ',') + chain), YES},
      {"GIF with plain text", DetectGif, still("!\x01\x0C" + Fill(12, ',') + chain), YES},
      {"GIF with extension FA", DetectGif, still("!\xFA" + chain), NO},
      {"GIF with two pictures", DetectGif, two(""), NO},
      {"animated GIF", DetectAnimatedGif, two(CONTROL), YES},
      {"animated GIF with a comment", DetectAnimatedGif, two("!\xFE" + chain), YES},
      {"animated GIF with an unknown extension", DetectAnimatedGif, two("!\x02" + chain), NO},
      {"animated GIF that ends with the second introducer", DetectAnimatedGif, Gif() + Picture() + ",", YES},
      {"animated GIF of three pictures", DetectAnimatedGif, two(CONTROL + Picture() + CONTROL), YES},
      {"GIF is not animated", DetectAnimatedGif, still(""), NO},
      {"animated GIF with sub-blocks of 255", DetectAnimatedGif,
       Gif() + PadTo(10, ",") + "\x08\xFF" + Fill(255, 'x') + "\xFF" + Fill(255, 'x') + Bytes("\0") + Picture(), YES},
      {"animated GIF beyond the head", DetectAnimatedGif,
       Gif() + PadTo(10, ",") + "\x08" +
           [] {
             std::string data;
             for (int i = 0; i < 240; ++i) data += "\xFF" + Fill(255, 'x');
             return data;
           }() +
           Bytes("\0") + CONTROL + Picture(),
       YES},
  };
}

std::vector<Sample> JpegSamples() {
  return {
      {"JPEG baseline", DetectJpeg, SOI + Segment('\xE0', 16) + Segment('\xDB', 67) + BASELINE, YES},
      {"JPEG grey", DetectJpeg, SOI + Frame('\xC0', 1), YES},
      {"JPEG CMYK", DetectJpeg, SOI + Frame('\xC0', 4), YES},
      {"JPEG of 2 components", DetectJpeg, SOI + Frame('\xC0', 2), NO},
      {"JPEG of 5 components", DetectJpeg, SOI + Frame('\xC0', 5), NO},
      {"JPEG cut before its components", DetectJpeg, SOI + BASELINE.substr(0, 9), NO},
      {"JPEG without a start", DetectJpeg, Segment('\xE0', 16) + BASELINE, NO},
      {"JPEG behind its end", DetectJpeg, SOI + EOI + BASELINE, NO},
      {"JPEG started anew", DetectJpeg, SOI + EOI + SOI + BASELINE, YES},
      {"JPEG progressive", DetectJpeg, SOI + PROGRESSIVE, YES},
      {"JPEG progressive without a start", DetectJpeg, Bytes("\xFF\xC2"), YES},
      {"JPEG lossless", DetectJpeg, SOI + Frame('\xC3', 3), NO},
      {"JPEG without a marker's first byte", DetectJpeg, SOI + "\xFE\xC2", NO},
      {"JPEG with Exif beyond the head", DetectJpeg, SOI + Bytes("\xFF\xE1\xFF\xFF") + Fill(200), NO},
      {"JPEG with a segment of 256", DetectJpeg, SOI + PadTo(258, Bytes("\xFF\xE1\1\0")) + PROGRESSIVE, YES},
      {"JPEG with a segment of length 0", DetectJpeg, SOI + Bytes("\xFF\xFE") + Bytes("\0\0"), NO},
      {"JPEG with every segment", DetectJpeg,
       SOI + Segment('\xC4', 5) + Segment('\xCC', 4) + Segment('\xDA', 3) + Segment('\xDB', 6) + Segment('\xDE', 9) + Segment('\xE0', 3) +
           Segment('\xEE', 7) + Segment('\xFE', 8) + PROGRESSIVE,
       YES},
      {"JPEG with every bare marker", DetectJpeg, SOI + Bytes("\xFF\x01\xFF\xD0\xFF\xD7") + BASELINE, YES},
      {"JPEG with segments of fixed size", DetectJpeg,
       SOI +
           Bytes("\xFF\xDC\xFF\xFF\0\0"
                 "\xFF\xDD\xFF\xFF\0\0"
                 "\xFF\xDF\xFF\xFF\0") +
           BASELINE,
       YES},
      {"JPEG with marker 00", DetectJpeg, SOI + Bytes("\xFF\0") + BASELINE, NO},
      {"JPEG with marker EF", DetectJpeg, SOI + Segment('\xEF', 4) + BASELINE, NO},
      {"JPEG with marker FD", DetectJpeg, SOI + Segment('\xFD', 4) + BASELINE, NO},
      {"JPEG with marker C5", DetectJpeg, SOI + Segment('\xC5', 4) + BASELINE, NO},
      {"JPEG with marker CB", DetectJpeg, SOI + Segment('\xCB', 4) + BASELINE, NO},
      {"JPEG with marker CD", DetectJpeg, SOI + Segment('\xCD', 4) + BASELINE, NO},
      {"JPEG with marker CF", DetectJpeg, SOI + Bytes("\xFF\xCF") + BASELINE, NO},
      {"JPEG with a fill byte", DetectJpeg, SOI + "\xFF" + PROGRESSIVE, NO},
      {"JPEG that is empty", DetectJpeg, "", NO},

      {"TIFF little-endian", DetectTiff, Bytes("II*"), YES},
      {"TIFF big-endian", DetectTiff, Bytes("MM\0*"), YES},
      {"TIFF with 43", DetectTiff, Bytes("II+\0"), NO},
      {"TIFF with 42 and 256", DetectTiff, Bytes("II*\1"), NO},
      {"TIFF of the charting program", DetectTiff, Bytes("II*\0\x08\0\0\0TavonGRAPH"), NO},
      {"TIFF of a charting programme", DetectTiff, Bytes("II*\0\x08\0\0\0TavonGRAPI"), YES},
      {"TIFF marked 3DF.", DetectTiff,
       Bytes("MM\0*\0\0\0\x08"
             "3DF."),
       NO},
      {"TIFF marked 3DF,", DetectTiff,
       Bytes("MM\0*\0\0\0\x08"
             "3DF,"),
       YES},
      {"TIFF as a JPEG", DetectJpeg, Bytes("II*"), YES},
      {"TIFF as a JPEG, big-endian", DetectJpeg, Bytes("MM\0*"), YES},
      {"TIFF of the charting program as a JPEG", DetectJpeg, Bytes("MM\0*\0\0\0\x08TavonGRAPH"), NO},
      {"TIFF marked 3DF. as a JPEG", DetectJpeg,
       Bytes("II*\0\0\0\0\x08"
             "3DF."),
       YES},
  };
}

std::vector<Sample> PaintEpsSamples() {
  return {
      {"paint EPS 7", DetectPaintEps, PaintEps("Tavon PIXEL-FORGE 7"), YES},
      {"paint EPS 6", DetectPaintEps, PaintEps("Tavon PIXEL-FORGE 6.9"), NO},
      {"paint EPS with joined words", DetectPaintEps, PaintEps("Tavon PIXEL-FORGE-Pro 10"), YES},
      {"paint EPS with another word", DetectPaintEps, PaintEps("Tavon PIXEL-FORGE Pro 10"), NO},
      {"paint EPS, the first name counts", DetectPaintEps, PaintEps("Tavon PIXEL-FORGE 5\nTavon PIXEL-FORGE 9"), NO},
      {"paint EPS, cut name", DetectPaintEps, PaintEps("Tavon PIXEL-FORG"), NO},
      {"paint EPS with plates", DetectPaintEps, PaintEps("Tavon PIXEL-FORGE 9\nPlateFile:"), NO},
      {"paint EPS without a box", DetectPaintEps, "%!PS %%BoundingBox Tavon PIXEL-FORGE 9", NO},
      {"paint EPS without a header", DetectPaintEps, " %!" + PaintEps("Tavon PIXEL-FORGE 9"), NO},
      {"paint EPS, binary", DetectPaintEps, DOS_EPS + "Tavon PIXEL-FORGE 9", YES},
      {"paint EPS, digit within 260 bytes", DetectPaintEps, PaintEps("Tavon PIXEL-FORGE" + Fill(242, ' ') + "9"), YES},
      {"paint EPS, digit behind 260 bytes", DetectPaintEps, PaintEps("Tavon PIXEL-FORGE" + Fill(243, ' ') + "9"), NO},
      {"paint EPS, version behind a zero byte", DetectPaintEps, PaintEps("Tavon PIXEL-FORGE" + Bytes("\0 9")), NO},
      {"paint EPS, cut at 13 bytes", DetectPaintEps, "%!%%BoundingB", NO},
  };
}

// The decoder is a module: without it the row is always no.
std::vector<Sample> CameraRawSamples() { return {{"camera raw without its decoder", DetectCameraRaw, "raw", NO, L"photo.cr2"}}; }

}  // namespace

std::vector<Sample> RasterSamples() {
  std::vector<Sample> all;
  for (auto part : {SignatureSamples, MacPaintSamples, GifSamples, JpegSamples, PaintEpsSamples, CameraRawSamples}) {
    std::vector<Sample> samples = part();
    std::move(samples.begin(), samples.end(), std::back_inserter(all));
  }
  return all;
}

}  // namespace typescout::tests
