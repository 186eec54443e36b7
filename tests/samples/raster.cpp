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
  return Executable("\x80\0"s, 0x80, Patch(header, 62, windowsVersion));
}

std::string MacPaint(const std::string& packets) { return Patch(Fill(512), 512, packets); }

std::string WrappedMacPaint(const std::string& fileType, const std::string& packets) { return Patch(With(640, 65, fileType), 640, packets); }

// A GIF's signature and screen descriptor, with these flags.
std::string Gif(char flags = '\0') { return PadTo(13, Patch("GIF89a", 10, {flags})); }

// A picture: its descriptor with these flags, a colour table of `table` bytes, the minimum code
// size and one sub-block of data.
std::string Picture(char flags = '\0', std::size_t table = 0) { return PadTo(9, ",") + flags + Fill(table, ';') + "\x08" + "\x02\x4C\x01\0"s; }

const std::string CONTROL = "!\xF9\x04\0\0\0\0\0"s;
const std::string TRAILER = ";";

// A start of image, and a frame header with this many components.
std::string Frame(char code, char components) { return "\xFF"s + code + "\0\x0B\x08\0\x10\0\x10"s + components; }

const std::string SOI = "\xFF\xD8";
const std::string EOI = "\xFF\xD9";
const std::string BASELINE = Frame('\xC0', 3);
const std::string PROGRESSIVE = Frame('\xC2', 3);

// A segment of this marker whose length field says `length`, with as many bytes as it says.
std::string Segment(char code, char length) { return PadTo(static_cast<std::size_t>(length) + 2, std::string{'\xFF', code, '\0', length}); }

// PostScript that the paint program wrote: `creator` follows the comment that has to be there.
std::string PaintEps(const std::string& creator) { return "%!PS\n%%BoundingBox: 0 0 9 9\n%%Creator: " + creator; }

const std::string DOS_EPS = "\xC5\xD0\xD3\xC6";

void SignatureSamples(Table& table) {
  table.Add("BMP", 0x0301, {Bitmap(18, "\x28\0\0\0"s), Bitmap(16, "\x28\0"s)},
            {Bitmap(15, "\x28"), Bitmap(18, "\x29\0\0\0"s), Patch(Bitmap(18, "\x28"), 0, "BN")});
  table.Add("OS/2 BMP", 0x0318, {Bitmap(18, "\x0C\0\0\0"s), Bitmap(16, "\x40\0"s)},
            {Bitmap(15, "\x0C"), Bitmap(18, "\x0D"), Bitmap(18, "\x0B"), Bitmap(18, "\x3F"), Bitmap(18, "\x41"), Patch(Bitmap(18, "\x0C"), 0, "CM")});
  table.Add("JPEG 2000", 0x0334, {"\0\0\0\x0CjP  \r\n\x87\n\0\0", "\xFFO\xFFQ\0\0"},
            {"\0\0\0\x0CjP  \r\n\x87\n\0", "\0\0\0\x0CjP  \n\x87\n\0\0\0", "\0\0\0\x0CjP  \r\n\x87\r\0\0", "\xFFO\xFFQ\0"});
  table.Add("TGA", 0x0303, {Targa(1, 1), Targa(0, 2), Targa(0, 3), Targa(1, 9), Targa(0, 11)},
            {Targa(0, 0), Targa(0, 4), Targa(0, 8), Targa(0, 12), Targa(0, 32), Targa(2, 1), "\0\0\2"});
  table.Add("PCX", 0x0302, {"\x0A\0\1", "\x0A\2\1", "\x0A\3\1", "\x0A\5\1"}, {"\x0A\1\1", "\x0A\4\1", "\x0A\6\1", "\x0A\5\0", "\x0B\5\1", "\x0A\5"});
  table.Add("Scitex CT", 0x0308, {ScitexCt(0, 0, 0), ScitexCt(1, 15, 7)},
            {ScitexCt(2, 15, 7), ScitexCt(1, 16, 7), ScitexCt(1, 15, 8), PadTo(1080, ScitexCt(0, 0, 0)), Patch(ScitexCt(0, 0, 0), 80, "LW"),
             Patch(ScitexCt(0, 0, 0), 80, "\0CT"s)});
  table.Add("cursor", 0x0311, {"\0\0\2", Executable("\x40\0"s, 64, "PE")}, {"\0\0\1", "\0\1\2"});
  table.Add("icon", 0x0310, {"\0\0\1", Executable("\x40\0"s, 64, "PE")}, {"\0\0\2", "\1\0\1"});
  table.Add("executable", 0x0312,
            {Executable("\x80\0\0\0"s, 128, "PE\0\0"s), Executable("\x80\0\1\0"s, 128, "PE\0\0"s), Executable("\0\2"s, 512, "PE"),
             NewExecutable(2, "\0\3"s), NewExecutable(2, "\x0A\3")},
            {Executable("\x80", 128, "PEx"), PadTo(64, Executable("\x40", 61, "")), Patch(Executable("\x80", 128, "PE"), 0, "ZM"),
             NewExecutable(2, "\xFF\2"), NewExecutable(1, "\0\3"s), NewExecutable(4, "\0\3"s), PadTo(128 + 63, NewExecutable(2, "\0\3"s)),
             Executable("\x80", 128, "LE")});
  table.Add("PSD", 0x0314, {"8BPS\0"}, {"8BPS", "8bps\0", "8BPT\0"});
  table.Add("0320", 0x0320, {"srcdocid\0"}, {"srcdocid", "srcdocix\0"});
  table.Add("PNG", 0x0322, {"\x89PNG\r\n\x1A\n"}, {"\x89PNG\n\x1A\n\n", "\x89PNG\r\n\x1A", "\x09PNG\r\n\x1A\n"});
  table.Add("WebP", 0x0339, {"RIFF\0\0\0\0WEBPV", "RIFF\x12\x34\x56\x78WEBP\0"}, {"RIFF\0\0\0\0WEBP", "RIFF\0\0\0\0WEBQV", "RIFX\0\0\0\0WEBPV"});
  table.Add("0327", 0x0327, {With(44, 1, "\2").replace(40, 4, "\x3F\xE6\x66\x66")},
            {With(44, 1, "\3").replace(40, 4, "\x3F\xE6\x66\x66"), With(44, 0, "\1\2").replace(40, 4, "\x3F\xE6\x66\x66"),
             With(44, 1, "\2").replace(40, 4, "\x3F\xD9\x99\x9A"), With(44, 1, "\2").replace(40, 4, "\x3F\xE6\x66\x67")});
  table.Add("XPM", 0x0329, {"/* XPM */"}, {"/*XPM*/\n\n", "/* XPM *"});
  table.Add("XCF", 0x0330, {"gimp xcf "}, {"gimp xcf"});
  table.Add("Netpbm", 0x0331, {"P1", "P6"}, {"P0", "P7", "p6", "P"});
  table.Add("GEM", 0x0313,
            {GemImage("\0\1\0\x08"s, "\x40\4"), GemImage("\0\1\0\x09"s, "\0\3"s), GemImage("\0\1\0\x09"s, "\x80\3"),
             GemImage("\0\1\0\x09"s, "\xFF\0"s), GemImage("\0\1\0\x08\0\1\0\xFF"s, "\0\0"s)},
            {GemImage("\0\1\0\x09"s, "\x40\0"s), GemImage("\0\1\0\x09"s, "\1\0"s), GemImage("\0\1\0\x09"s, "\0\4"s), GemImage("\0\1\0\x07"s, "\0\0"s),
             GemImage("\0\1\1\x08"s, "\0\0"s), GemImage("\0\2\0\x08"s, "\0\0"s), GemImage("\1\1\0\x08"s, "\0\0"s),
             GemImage("\0\1\0\x08\0\1\1"s, "\0\0"s), GemImage("\0\1\0\x08"s, "\0"s)});
}

void MacPaintSamples(Table& table) {
  const std::string line = "\x47" + Fill(72, 'x');  // one literal of 72 bytes
  const std::string run = "\xB9\0"s;                // one run of 72 bytes
  table.Add("MacPaint", 0x0317,
            {MacPaint(line), MacPaint(run), MacPaint("\x22" + Fill(35, 'x') + "\xDC\0"s), MacPaint("\xFF\0\xFF\0"s + "\x43" + Fill(68, 'x')),
             MacPaint("\x21" + Fill(34, 'x') + "\xFD\0"s + "\x21" + Fill(34, 'x')), WrappedMacPaint("PNTG", line)},
            {MacPaint("\x23" + Fill(36, 'x') + "\x23" + Fill(36, 'x')), MacPaint("\xBA\0\1xx"s), MacPaint("\x80\0"s), Patch(MacPaint(line), 0, "\1"),
             Fill(512), Patch(WrappedMacPaint("PNTG", ""), 512, run), WrappedMacPaint("PNTH", line)});
}

void GifSamples(Table& table) {
  const std::string chain = "\1x\2xx\0"s;
  const auto still = [](const std::string& blocks) { return Gif() + blocks + Picture() + TRAILER; };
  const auto two = [](const std::string& between) { return Gif() + Picture() + between + Picture() + TRAILER; };
  std::string beyondTheHead = "\x08";
  for (int i = 0; i < 240; ++i) beyondTheHead += "\xFF" + Fill(255, 'x');
  table.Add("GIF", 0x0305, {still(""), Patch(still(""), 0, "GIF87a"), Gif() + ",", Gif() + PadTo(10, ",") + "\x08\xFFxxx"},
            {Patch(still(""), 0, "GIF88a"), Patch(still(""), 0, "gif89a"), Gif() + TRAILER, two("")});
  // Colour tables are passed over when the flags say that they are there.
  table.Add("GIF", 0x0305,
            {Gif('\x80') + Fill(6, ';') + Picture(), Gif('\x87') + Fill(768, ';') + Picture(), Gif('\x07') + Picture(),
             Gif() + Picture('\x81', 12) + TRAILER},
            {});
  table.Add("animated GIF", 0x0616, {Gif() + Picture('\x87', 768) + Picture(), Gif() + Picture('\x07') + Picture()}, {});
  // Extensions: control, comment, application, plain text; FA is none that is known.
  table.Add("GIF", 0x0305,
            {still(CONTROL), still("!\xFE" + chain), still("!\xFF\x0BNETSCAPE2.0" + chain), still("!\xFF\0"s + chain),
             still("!\xFF\x80" + Fill(128, ',') + chain), still("!\x01\x0C" + Fill(12, ',') + chain)},
            {still("!\xFA" + chain)});
  table.Add("animated GIF", 0x0616,
            {two(CONTROL), two("!\xFE" + chain), two(CONTROL + Picture() + CONTROL), Gif() + Picture() + ",",
             Gif() + PadTo(10, ",") + "\x08\xFF" + Fill(255, 'x') + "\xFF" + Fill(255, 'x') + "\0"s + Picture(),
             Gif() + PadTo(10, ",") + beyondTheHead + "\0"s + CONTROL + Picture()},
            {two("!\x02" + chain), still("")});
}

void JpegSamples(Table& table) {
  table.Add("JPEG", 0x0306,
            {SOI + Segment('\xE0', 16) + Segment('\xDB', 67) + BASELINE, SOI + Frame('\xC0', 1), SOI + Frame('\xC0', 4), SOI + EOI + SOI + BASELINE,
             SOI + PROGRESSIVE, "\xFF\xC2"},
            {SOI + Frame('\xC0', 2), SOI + Frame('\xC0', 5), SOI + BASELINE.substr(0, 9), Segment('\xE0', 16) + BASELINE, SOI + EOI + BASELINE,
             SOI + Frame('\xC3', 3), SOI + "\xFE\xC2", SOI + "\xFF" + PROGRESSIVE, ""});
  // Segments, markers without one, and segments of a fixed size are passed over.
  table.Add("JPEG", 0x0306,
            {SOI + PadTo(258, "\xFF\xE1\1\0"s) + PROGRESSIVE,
             SOI + Segment('\xC4', 5) + Segment('\xCC', 4) + Segment('\xDA', 3) + Segment('\xDB', 6) + Segment('\xDE', 9) + Segment('\xE0', 3) +
                 Segment('\xEE', 7) + Segment('\xFE', 8) + PROGRESSIVE,
             SOI + "\xFF\x01\xFF\xD0\xFF\xD7" + BASELINE, SOI + "\xFF\xDC\xFF\xFF\0\0"s + "\xFF\xDD\xFF\xFF\0\0"s + "\xFF\xDF\xFF\xFF\0"s + BASELINE},
            {SOI + "\xFF\xE1\xFF\xFF" + Fill(200), SOI + "\xFF\xFE\0\0"s, SOI + "\xFF\0"s + BASELINE, SOI + "\xFF\xCF" + BASELINE});
  for (const char code : "\xC5\xCB\xCD\xEF\xFD"s) table.Add("JPEG", 0x0306, {}, {SOI + Segment(code, 4) + BASELINE});
  // TIFF headers are a yes too, but not those of the charting program.
  table.Add("JPEG", 0x0306, {"II*", "MM\0*", "II*\0\0\0\0\0103DF."}, {"MM\0*\0\0\0\x08TavonGRAPH"});
  table.Add("TIFF", 0x0304, {"II*", "MM\0*", "II*\0\x08\0\0\0TavonGRAPI", "MM\0*\0\0\0\0103DF,"},
            {"II+\0", "II*\1", "II*\0\x08\0\0\0TavonGRAPH", "MM\0*\0\0\0\0103DF."});
}

void PaintEpsSamples(Table& table) {
  table.Add("paint EPS", 0x0324,
            {PaintEps("Tavon PIXEL-FORGE 7"), PaintEps("Tavon PIXEL-FORGE-Pro 10"), DOS_EPS + "Tavon PIXEL-FORGE 9",
             PaintEps("Tavon PIXEL-FORGE" + Fill(242, ' ') + "9"), PaintEps("Tavon PIXEL-FORGE\t\v\f\r\n+2147483648")},
            {PaintEps("Tavon PIXEL-FORGE 6.9"), PaintEps("Tavon PIXEL-FORGE Pro 10"), PaintEps("Tavon PIXEL-FORGE 5\nTavon PIXEL-FORGE 9"),
             PaintEps("Tavon PIXEL-FORG"), PaintEps("Tavon PIXEL-FORGE 9\nPlateFile:"), "%!PS %%BoundingBox Tavon PIXEL-FORGE 9",
             " %!" + PaintEps("Tavon PIXEL-FORGE 9"), PaintEps("Tavon PIXEL-FORGE" + Fill(243, ' ') + "9"), PaintEps("Tavon PIXEL-FORGE" + "\0 9"s),
             "%!%%BoundingB", PaintEps("Tavon PIXEL-FORGE -2147483649"), PaintEps("Tavon PIXEL-FORGE +-8")});
}

// The decoder is a module: without it the row is always no.
void CameraRawSamples(Table& table) { table.Add("camera raw", 0x0337, {}, {Named(L"photo.cr2", "raw")}); }

}  // namespace

void RasterSamples(Table& table) {
  for (auto part : {SignatureSamples, MacPaintSamples, GifSamples, JpegSamples, PaintEpsSamples, CameraRawSamples}) part(table);
}

}  // namespace typescout::tests
