// Vector drawings, CAD and metafiles.
#include "detectors/vector/vector.h"

#include <iterator>

#include "tests/samples/sample.h"

namespace typescout::tests {
namespace {

std::string CompoundHead() { return PadTo(64, "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"); }

// A compound document with one stream.
Sample Compound(const std::string& name, Detector detector, const std::wstring& stream, const std::string& content, Verdict verdict,
                const std::wstring& path = L"sample") {
  return {name, detector, CompoundHead(), verdict, path, 0, {{stream, content}}};
}

std::vector<Sample> Signatures() {
  const std::string wmf = PadTo(44, Bytes("\x01\0\x09\0"));
  const std::string emf = Fill(40) + " EMF";
  const std::string type0502 = Bytes("\x01\xFF.\x04\x03..\x01");
  const std::string pict2 = Bytes("\0\x11\x02\xFF");
  const std::string maker = PadTo(20, "?MakerVector");
  return {
      {"WMF placeable", DetectWindowsMetafile, PadTo(44, "\xD7\xCD\xC6\x9A"), YES},
      {"WMF placeable, 43 bytes", DetectWindowsMetafile, PadTo(43, "\xD7\xCD\xC6\x9A"), NO},
      {"WMF in memory", DetectWindowsMetafile, wmf, YES},
      {"WMF on disk", DetectWindowsMetafile, Patch(wmf, 0, "\x02"), YES},
      {"WMF type 0", DetectWindowsMetafile, Patch(wmf, 0, Fill(1)), NO},
      {"WMF type 3", DetectWindowsMetafile, Patch(wmf, 0, "\x03"), NO},
      {"WMF type 0x0101", DetectWindowsMetafile, Patch(wmf, 1, "\x01"), NO},
      {"WMF header of 8 words", DetectWindowsMetafile, Patch(wmf, 2, "\x08"), NO},
      {"WMF header of 0x0109 words", DetectWindowsMetafile, Patch(wmf, 3, "\x01"), NO},

      {"0540 complemented", DetectFilter0540, Bytes("\0\x01\x02\x03\xFF\xFE\xFD\xFC"), YES},
      {"0540 first off", DetectFilter0540, Bytes("\0\x01\x02\x03\xFE\xFE\xFD\xFC"), NO},
      {"0540 last off", DetectFilter0540, Bytes("\0\x01\x02\x03\xFF\xFE\xFD\xFD"), NO},
      {"0540 complements are zero", DetectFilter0540, "\xFF\xFF\xFF\xFF" + Fill(4), YES},
      {"0540 complements are zero, 7 bytes", DetectFilter0540, "\xFF\xFF\xFF\xFF" + Fill(3), NO},

      {"0504 kind 0", DetectFilter0504, Bytes("\xFF\xFF....\0."), YES},
      {"0504 kind 2", DetectFilter0504, Bytes("\xFF\xFF....\x02."), YES},
      {"0504 kind 1", DetectFilter0504, Bytes("\xFF\xFF....\x01."), NO},
      {"0504 kind 3", DetectFilter0504, Bytes("\xFF\xFF....\x03."), NO},
      {"0504 second byte off", DetectFilter0504, Bytes("\xFF\xFE....\0."), NO},
      {"0504 of 7 bytes", DetectFilter0504, Bytes("\xFF\xFF....\0"), NO},

      {"0502 kind 1", DetectFilter0502, type0502, YES},
      {"0502 kind 2", DetectFilter0502, Patch(type0502, 7, "\x02"), YES},
      {"0502 kind 0", DetectFilter0502, Patch(type0502, 7, Fill(1)), NO},
      {"0502 kind 3", DetectFilter0502, Patch(type0502, 7, "\x03"), NO},
      {"0502 byte 1 off", DetectFilter0502, Patch(type0502, 1, "\xFE"), NO},
      {"0502 byte 3 off", DetectFilter0502, Patch(type0502, 3, "\x05"), NO},
      {"0502 byte 4 off", DetectFilter0502, Patch(type0502, 4, "\x04"), NO},

      {"050B of 2000 bytes", DetectFilter050B, PadTo(2'000, "..\xD3\xA8\xA8"), YES},
      {"050B of 1999 bytes", DetectFilter050B, PadTo(1'999, "..\xD3\xA8\xA8"), NO},
      {"050B byte 4 off", DetectFilter050B, PadTo(2'000, "..\xD3\xA8\xA9"), NO},

      {"PICT version 2", DetectPict, Fill(512) + Fill(10, '.') + pict2, YES},
      {"PICT version 1", DetectPict, Fill(522) + Bytes("\x11\x01"), YES},
      {"PICT version 1, last byte cut", DetectPict, Fill(522) + "\x11", NO},
      {"PICT with MacBinary", DetectPict, Patch(Fill(650) + pict2, 1, "\x05"), YES},
      {"PICT with MacBinary, version 1", DetectPict, Patch(Fill(650) + "\x11\x01", 1, "\x05"), YES},
      {"PICT as if with MacBinary, name empty", DetectPict, Fill(650) + pict2, NO},
      {"PICT as if without MacBinary", DetectPict, Patch(Fill(522) + pict2, 1, "\x05"), NO},
      {"PICT with two bytes that are no MacBinary", DetectPict, Patch(Fill(522) + pict2, 0, "\x01\x05"), YES},

      {"EMF", DetectEnhancedMetafile, emf, YES},
      {"EMF of 43 bytes", DetectEnhancedMetafile, Fill(40) + " EM", NO},

      {"Tavon metafile", DetectTavonMetafile, "@TavonMF", YES},
      {"Tavon metafile cut", DetectTavonMetafile, "@TavonM", NO},

      {"HGB3", DetectHgb3, "HGB3", YES},
      {"HGB3 as HGB1", DetectHgb3, "HGB1", NO},

      {"0536", DetectFilter0536, Bytes("\x01\0\0\0\x01\0\x08\0D\0\0\0\0\x0C\x7F\x09\x06"), YES},
      {"0536 zero off", DetectFilter0536, Bytes("\x01\0\0\0\x01\0\x08\0D\0\0\x01\0\x0C\x7F\x09\x06"), NO},

      {"SVG of four bytes", DetectSvg, "<svg", YES},
      {"SVG of three bytes", DetectSvg, "<sv", NO},
      {"SVG in upper case", DetectSvg, "<SVG xmlns", NO},
      {"SVG behind a prolog", DetectSvg, "<?xml version=\"1.0\"?>\n<svgz>", YES},
      {"SVG at 2044", DetectSvg, Fill(2'044, ' ') + "<svg" + Fill(100, ' '), YES},
      {"SVG at 2045", DetectSvg, Fill(2'045, ' ') + "<svg" + Fill(100, ' '), NO},

      {"DWG AC1015", DetectDwg, "AC1015", YES},
      {"DWG AC1000", DetectDwg, "AC1000", YES},
      {"DWG AC1029", DetectDwg, "AC1029", YES},
      {"DWG AC1032", DetectDwg, "AC1032", NO},
      {"DWG AC10/5", DetectDwg, "AC10/5", NO},
      {"DWG AC101:", DetectDwg, "AC101:", NO},
      {"DWG AC101", DetectDwg, "AC101", NO},
      {"DWG AC10a5", DetectDwg, "AC10a5", NO},
      {"DWG ac1015", DetectDwg, "ac1015", NO},

      {"MakerVector", DetectMakerVector, maker, YES},
      {"MakerVector in other cases", DetectMakerVector, PadTo(20, "?mAKERvECTOR"), YES},
      {"MakerVector of 19 bytes", DetectMakerVector, PadTo(19, "?MakerVector"), NO},
      {"MakerVector with a zero byte", DetectMakerVector, Patch(maker, 11, Fill(1)), NO},
      {"MakerVector one byte early", DetectMakerVector, PadTo(20, "MakerVector"), NO},

      {"OPS", DetectOpsHeader, "<!OPS,", YES},
      {"OPS in lower case", DetectOpsHeader, "<!ops,", NO},
  };
}

std::vector<Sample> Cgm() {
  // Elements: the class in the high four bits, then seven of the identifier, then five of the
  // length.
  const std::string begin = Bytes("\0\x20");
  const std::string beginPicture = Bytes("\0\x60");
  const std::string version = Bytes("\x10\x22\0\x01");
  const std::string line = Bytes("\x40\x20");  // drawing: nothing may follow but a refusal
  const std::string more = line + line + line;
  return {
      {"CGM binary of four bytes", DetectCgm, begin + Fill(2), YES},
      {"CGM binary of three bytes", DetectCgm, begin + Fill(1), NO},
      {"CGM binary, head out before the second element", DetectCgm, begin + line + Fill(2), YES},
      {"CGM binary, second element draws", DetectCgm, begin + line + Fill(3), NO},
      {"CGM binary, version", DetectCgm, begin + version + more, YES},
      {"CGM binary, begin picture", DetectCgm, begin + beginPicture + more, YES},
      {"CGM binary, end metafile", DetectCgm, begin + Bytes("\0\x40") + more, NO},
      {"CGM binary, class 1, id 3", DetectCgm, begin + Bytes("\x10\x60") + more, NO},
      {"CGM binary, description before version", DetectCgm, begin + Bytes("\x10\x40") + version + more, YES},
      {"CGM binary, class 2 before version", DetectCgm, begin + Bytes("\x20\x20") + version + more, NO},
      {"CGM binary, class 5 before version", DetectCgm, begin + Bytes("\x50\x20") + version + more, NO},
      {"CGM binary, class 6 before version", DetectCgm, begin + Bytes("\x60\x20") + version + more, YES},
      {"CGM binary, class 7 before version", DetectCgm, begin + Bytes("\x70\x20") + version + more, YES},
      {"CGM binary, class 8 before version", DetectCgm, begin + Bytes("\x80\x20") + version + more, NO},
      {"CGM binary, name of 5 bytes and a pad", DetectCgm, Bytes("\0\x25") + "names@" + version + more, YES},
      {"CGM binary, name of 4 bytes", DetectCgm, Bytes("\0\x24") + "name" + version + more, YES},
      {"CGM binary, name of 32 bytes", DetectCgm, Bytes("\0\x3F\0\x20") + Fill(32, '@') + version + more, YES},
      {"CGM binary, name of 32 bytes, then a line", DetectCgm, Bytes("\0\x3F\0\x20") + Fill(32) + more, NO},
      {"CGM binary, name of 33 bytes and a pad", DetectCgm, Bytes("\0\x3F\0\x21") + Fill(34, '@') + version + more, YES},
      {"CGM binary, name of 32768 bytes", DetectCgm, Bytes("\0\x3F\x80\0") + more, YES},
      {"CGM binary, version first", DetectCgm, version + version + more, NO},

      {"CGM text", DetectCgm, "BEGMF", YES},
      {"CGM text behind spaces, in lower case", DetectCgm, "   begmf", YES},
      {"CGM text that runs on", DetectCgm, "BEGMFILE", YES},
      {"CGM text behind a tab", DetectCgm, "\tBEGMF", NO},

      {"CGM characters 7E", DetectCgm, "0 ~.", YES},
      {"CGM characters 1B", DetectCgm, "0 \x1B.", YES},
      {"CGM characters 9C", DetectCgm, "0 \x9C.", YES},
      {"CGM characters A", DetectCgm, "0 A.", NO},
      {"CGM characters 7E, three bytes", DetectCgm, "0 ~", NO},
      {"CGM characters 7E behind a space", DetectCgm, " 0 ~.", NO},
      {"CGM characters without the space", DetectCgm, "0.~.", NO},
  };
}

std::vector<Sample> Dxf() {
  const std::string section = "\nSECTION\n";
  const std::string zeros = Fill(66, ' ') + Fill(67, '0');
  return {
      {"DXF", DetectDxf, "0\r\nSECTION\r\n2\r\nHEADER\r\n", YES},
      {"DXF with LF", DetectDxf, "0\nSECTION\n", YES},
      {"DXF with CR", DetectDxf, "0\rSECTION\r", YES},
      {"DXF with CR CR", DetectDxf, "0\r\rSECTION\r", NO},
      {"DXF with LF CR", DetectDxf, "0\n\rSECTION\n\r", NO},
      {"DXF with SECTIONS", DetectDxf, "0\nSECTIONS\n", YES},
      {"DXF with section", DetectDxf, "0\nsection\n", NO},
      {"DXF with spaces before SECTION", DetectDxf, "0\n  SECTION\n", NO},
      {"DXF without an end of the second line", DetectDxf, "0\nSECTION", NO},
      {"DXF of one line", DetectDxf, "0\r\n", NO},

      {"DXF code 999", DetectDxf, "999" + section, NO},
      {"DXF code empty", DetectDxf, section, YES},
      {"DXF code empty, CR LF", DetectDxf, "\r\nSECTION\r\n", YES},
      {"DXF code 000", DetectDxf, "000" + section, YES},
      {"DXF code 0 and text", DetectDxf, "0x5" + section, YES},
      {"DXF code text", DetectDxf, "EOF 5" + section, YES},
      {"DXF code +5", DetectDxf, "+5" + section, NO},
      {"DXF code -5", DetectDxf, "-5" + section, NO},
      {"DXF code - 5", DetectDxf, "- 5" + section, YES},
      {"DXF code -", DetectDxf, "-" + section, YES},
      {"DXF code 5 behind a no-break space", DetectDxf, "\xA0" + ("5" + section), YES},
      {"DXF code 5 behind a zero byte", DetectDxf, Fill(1) + "5" + section, YES},
      {"DXF code 0, zero byte, 5", DetectDxf, "0" + Fill(1) + "5" + section, YES},

      {"DXF code of 133 characters", DetectDxf, zeros + "\r\nSECTION\r\n", YES},
      {"DXF code of 134 characters", DetectDxf, zeros + "0\r\nSECTION\r\n", NO},
      {"DXF value of 133 characters", DetectDxf, "0" + PadTo(134, "\nSECTION") + "\n", YES},
      {"DXF value of 134 characters", DetectDxf, "0" + PadTo(135, "\nSECTION") + "\n", NO},

      {"DXF binary", DetectDxf, "AutoCAD Binary DXF", YES},
  };
}

std::vector<Sample> RecordStreams() {
  // The length bytes of marks are passed over: they lie here.
  const std::string open1 = Bytes("\x02\x50\x01\x7E");
  const std::string record1 = Bytes("\x02\x02\x01.");
  const std::string last1 = Bytes("\x02\x02\x01\x7F");
  const std::string open2 = Bytes("\x02\x50\x04\x7E");
  const std::string record2 = Bytes("\x02\x02\x04.");
  const std::string close2 = Bytes("\x02\x50\x04\x7F");
  const std::string filler = Bytes("\x01\x01.");
  const std::string third = Bytes("\x02\x02\x02\x7E");
  const std::string first = open1 + record1 + last1;
  const std::string second = open2 + record2 + close2;
  return {
      {"0505 of a first record", DetectFilter0505, Bytes("\x02.\0"), YES},
      {"0505 of zeros", DetectFilter0505, Fill(3), NO},
      {"0505 of two bytes", DetectFilter0505, Bytes("\x02\0"), NO},
      {"0505 third group", DetectFilter0505, third, YES},
      {"0505 first record, third group", DetectFilter0505, Bytes("\x02\x03\0..") + third, YES},
      {"0505 first record off, third group", DetectFilter0505, Bytes("\x02\x03\x01..") + third, NO},
      {"0505 first record and two bytes", DetectFilter0505, Bytes("\x02\x01\0.."), YES},

      {"0505 fillers, third group", DetectFilter0505, filler + Bytes("\x01\0") + third, YES},
      {"0505 of one filler", DetectFilter0505, Bytes("\x01\0."), YES},

      {"0505 first group, filler, third group", DetectFilter0505, first + filler + third, YES},
      {"0505 filler, first group of one record, third group", DetectFilter0505, filler + open1 + last1 + third, YES},
      {"0505 first group, record's type off", DetectFilter0505, open1 + Patch(record1, 0, "\x03") + last1 + third, NO},
      {"0505 first group opened by its close", DetectFilter0505, Patch(open1, 3, "\x7F") + record1 + last1 + third, NO},
      {"0505 first group, head out at its mark", DetectFilter0505, open1, YES},
      {"0505 first group, one byte behind its mark", DetectFilter0505, open1 + "\x02", NO},
      {"0505 first group, head out at a record", DetectFilter0505, open1 + record1, YES},
      {"0505 first group, head out in a record", DetectFilter0505, open1 + Patch(record1, 1, "\x09"), YES},
      {"0505 first group and three bytes", DetectFilter0505, first + "...", NO},

      {"0505 both groups, third group", DetectFilter0505, first + second + third, YES},
      {"0505 both groups with fillers", DetectFilter0505, first + filler + second + filler + third, YES},
      {"0505 second group of two records", DetectFilter0505, open2 + record2 + record2 + close2 + third, NO},
      {"0505 second group, record's type off", DetectFilter0505, open2 + Patch(record2, 0, "\x03") + close2 + third, NO},
      {"0505 second group, record's kind off", DetectFilter0505, open2 + Patch(record2, 2, "\x01") + close2 + third, NO},
      {"0505 second group, close's mark off", DetectFilter0505, open2 + record2 + Patch(close2, 3, "\x80") + third, NO},
      {"0505 second group, head out behind its record", DetectFilter0505, open2 + record2, NO},
      {"0505 second group, head out in its record", DetectFilter0505, open2 + Patch(record2, 1, "\x03"), YES},
      {"0505 second group and two bytes", DetectFilter0505, second + "..", YES},
  };
}

// The file with a header at `at`, of this version and with this number behind it.
std::string VisioFile(std::size_t size, std::size_t at, const std::string& version, const std::string& number = Bytes("\x01\0")) {
  const std::string header = PadTo(24, "Visio (TM) Drawing\r\n") + version + Fill(6) + number;
  return Patch(Fill(at), at, header).append(size, '\0').substr(0, size);
}

std::vector<Sample> Visio() {
  const std::string version2 = Bytes("\0\0\x02\0");
  const std::string version5 = Bytes("\0\0\x05\0");
  const std::string good = VisioFile(1'100, 512, version2);
  return {
      {"Visio 2", DetectVisio, VisioFile(540, 0, version2), YES},
      {"Visio 2 of 539 bytes", DetectVisio, VisioFile(539, 0, version2), NO},
      {"Visio 2 with number 0", DetectVisio, VisioFile(540, 0, version2, Fill(2)), YES},
      {"Visio 1", DetectVisio, VisioFile(540, 0, Bytes("\0\0\x01\0")), NO},
      {"Visio 3", DetectVisio, VisioFile(540, 0, Bytes("\x03\0\x03\0")), YES},
      {"Visio 4", DetectVisio, VisioFile(540, 0, Bytes("\0\0\x04\0")), YES},
      {"Visio 5", DetectVisio, VisioFile(540, 0, version5), YES},
      {"Visio 5 with number 2", DetectVisio, VisioFile(540, 0, version5, Bytes("\x02\0")), NO},
      {"Visio 6", DetectVisio, VisioFile(540, 0, Bytes("\0\0\x06\0")), YES},
      {"Visio at 512", DetectVisio, good, YES},
      {"Visio at 512, version beyond the end", DetectVisio, good.substr(0, 535) + Fill(5), NO},
      {"Visio at 512, the first header decides", DetectVisio, Patch(good, 0, VisioFile(36, 0, Fill(4))), NO},
      {"Visio at 1000", DetectVisio, VisioFile(1'100, 1'000, version2), NO},
      {"Visio at 15872", DetectVisio, VisioFile(20'000, 15'872, version2), YES},
      {"Visio at 16384", DetectVisio, VisioFile(20'000, 16'384, version2), NO},
      {"Visio without the line end", DetectVisio, Patch(good, 531, " "), NO},
  };
}

std::vector<Sample> CompoundRows() {
  const std::string graphics = Bytes("\xFFQLX....\x01\x16......");
  const std::wstring main = L"ScriptoraDesk_MAIN";
  const std::string contents = Bytes("\xE8\xAC");
  Sample smallHead = Compound("QLX graphics stream, head of 16 bytes", DetectScriptoraGraphics, main, graphics, YES);
  smallHead.bytes.resize(16);
  Sample smallerHead = Compound("QLX graphics stream, head of 15 bytes", DetectScriptoraGraphics, main, graphics, NO);
  smallerHead.bytes.resize(15);
  return {
      {"QLX graphics", DetectScriptoraGraphics, graphics, YES},
      {"QLX graphics of 15 bytes", DetectScriptoraGraphics, graphics.substr(0, 15), NO},
      {"QLX graphics, magic off", DetectScriptoraGraphics, Patch(graphics, 3, "Y"), NO},
      Compound("QLX graphics stream", DetectScriptoraGraphics, main, graphics, YES),
      Compound("QLX graphics stream, document", DetectScriptoraGraphics, main, Patch(graphics, 9, "\x0A"), NO),
      std::move(smallHead),
      std::move(smallerHead),

      {"Publisher by its name", DetectPublisher, "anything", YES, L"picture.pub"},
      {"Publisher by its name in other cases", DetectPublisher, "anything", YES, L"a.b.PuB"},
      {"Publisher in a folder", DetectPublisher, "anything", YES, L"C:\\x.doc\\picture.pub"},
      {"Publisher folder", DetectPublisher, "anything", NO, L"picture.pub/x"},
      {"Publisher named pubx", DetectPublisher, "anything", NO, L"picture.pubx"},
      {"Publisher without a dot", DetectPublisher, "anything", NO, L"pub"},
      Compound("Publisher stream", DetectPublisher, L"Contents", contents, YES, L"a.pub"),
      Compound("Publisher stream, the other byte order", DetectPublisher, L"Contents", "\xAC\xE8", NO, L"a.pub"),
      Compound("Publisher stream of one byte", DetectPublisher, L"Contents", "\xE8", NO, L"a.pub"),
      Compound("Publisher without its stream", DetectPublisher, L"Content", contents, NO, L"a.pub"),
      Compound("Publisher stream, another name", DetectPublisher, L"Contents", contents, NO, L"a.doc"),
  };
}

}  // namespace

std::vector<Sample> VectorSamples() {
  std::vector<Sample> all;
  for (auto group : {Signatures, Cgm, Dxf, RecordStreams, Visio, CompoundRows}) {
    std::vector<Sample> samples = group();
    std::move(samples.begin(), samples.end(), std::back_inserter(all));
  }
  return all;
}

}  // namespace typescout::tests
