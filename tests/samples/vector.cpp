// Vector drawings, CAD and metafiles.
#include "tests/samples/sample.h"

namespace typescout::tests {
namespace {

void Signatures(Table& table) {
  const std::string wmf = PadTo(44, "\x01\0\x09\0"s);
  const std::string emf = Fill(40) + " EMF";
  const std::string type0502 = "\x01\xFF.\x04\x03..\x01";
  const std::string pict2 = "\0\x11\x02\xFF"s;
  const std::string maker = PadTo(20, "?MakerVector");
  table.Add("WMF", 0x050E, {PadTo(44, "\xD7\xCD\xC6\x9A"), wmf, Patch(wmf, 0, "\x02")},
            {PadTo(43, "\xD7\xCD\xC6\x9A"), Patch(wmf, 0, Fill(1)), Patch(wmf, 0, "\x03"), Patch(wmf, 1, "\x01"), Patch(wmf, 2, "\x08"),
             Patch(wmf, 3, "\x01")});
  table.Add("0540", 0x0540, {"\0\x01\x02\x03\xFF\xFE\xFD\xFC", "\xFF\xFF\xFF\xFF" + Fill(4)},
            {"\0\x01\x02\x03\xFE\xFE\xFD\xFC", "\0\x01\x02\x03\xFF\xFE\xFD\xFD", "\xFF\xFF\xFF\xFF" + Fill(3)});
  table.Add("0504", 0x0504, {"\xFF\xFF....\0.", "\xFF\xFF....\x02."},
            {"\xFF\xFF....\x01.", "\xFF\xFF....\x03.", "\xFF\xFE....\0.", "\xFF\xFF....\0"});
  table.Add(
      "0502", 0x0502, {type0502, Patch(type0502, 7, "\x02")},
      {Patch(type0502, 7, Fill(1)), Patch(type0502, 7, "\x03"), Patch(type0502, 1, "\xFE"), Patch(type0502, 3, "\x05"), Patch(type0502, 4, "\x04")});
  table.Add("050B", 0x050B, {PadTo(2'000, "..\xD3\xA8\xA8")}, {PadTo(1'999, "..\xD3\xA8\xA8"), PadTo(2'000, "..\xD3\xA8\xA9")});
  table.Add("PICT", 0x050D,
            {Fill(512) + Fill(10, '.') + pict2, Fill(522) + "\x11\x01"s, Patch(Fill(650) + pict2, 1, "\x05"),
             Patch(Fill(650) + "\x11\x01", 1, "\x05"), Patch(Fill(522) + pict2, 0, "\x01\x05")},
            {Fill(522) + "\x11", Fill(650) + pict2, Patch(Fill(522) + pict2, 1, "\x05")});
  table.Add("EMF", 0x0514, {emf}, {Fill(40) + " EM"});
  table.Add("Tavon metafile", 0x050F, {"@TavonMF"}, {"@TavonM"});
  table.Add("HGB3", 0x0513, {"HGB3"}, {"HGB1"});
  table.Add("0536", 0x0536, {"\x01\0\0\0\x01\0\x08\0D\0\0\0\0\x0C\x7F\x09\x06"}, {"\x01\0\0\0\x01\0\x08\0D\0\0\x01\0\x0C\x7F\x09\x06"});
  table.Add("SVG", 0x0541, {"<svg", "<?xml version=\"1.0\"?>\n<svgz>", Fill(2'044, ' ') + "<svg" + Fill(100, ' ')},
            {"<sv", "<SVG xmlns", Fill(2'045, ' ') + "<svg" + Fill(100, ' ')});
  table.Add("DWG", 0x0530, {"AC1015", "AC1000", "AC1029"}, {"AC1032", "AC10/5", "AC101:", "AC101", "AC10a5", "ac1015"});
  table.Add("MakerVector", 0x0531, {maker, PadTo(20, "?mAKERvECTOR")},
            {PadTo(19, "?MakerVector"), Patch(maker, 11, Fill(1)), PadTo(20, "MakerVector")});
  table.Add("OPS", 0x0544, {"<!OPS,"}, {"<!ops,"});
}

void Cgm(Table& table) {
  // Elements: the class in the high four bits, then seven of the identifier, then five of the
  // length.
  const std::string begin = "\0\x20"s;
  const std::string beginPicture = "\0\x60"s;
  const std::string version = "\x10\x22\0\x01"s;
  const std::string line = "\x40\x20";  // drawing: nothing may follow but a refusal
  const std::string more = line + line + line;
  table.Add("CGM", 0x0500,
            {begin + Fill(2), begin + line + Fill(2), begin + version + more, begin + beginPicture + more, begin + "\x10\x40" + version + more,
             begin + "\x60\x20" + version + more, begin + "\x70\x20" + version + more},
            {begin + Fill(1), begin + line + Fill(3), begin + "\0\x40"s + more, begin + "\x10\x60" + more, begin + "\x20\x20" + version + more,
             begin + "\x50\x20" + version + more, begin + "\x80\x20" + version + more, version + version + more});
  // Names: of an even and an odd length, and longer than 30 bytes with the length in a word of its own.
  table.Add("CGM", 0x0500,
            {"\0\x25names@"s + version + more, "\0\x24name"s + version + more, "\0\x3F\0\x20"s + Fill(32, '@') + version + more,
             "\0\x3F\0\x21"s + Fill(34, '@') + version + more, "\0\x3F\x80\0"s + more},
            {"\0\x3F\0\x20"s + Fill(32) + more});
  // The clear-text and the character encoding.
  table.Add("CGM", 0x0500, {"BEGMF", "   begmf", "BEGMFILE", "0 ~.", "0 \x1B.", "0 \x9C."}, {"\tBEGMF", "0 A.", "0 ~", " 0 ~.", "0.~."});
}

void Dxf(Table& table) {
  const std::string section = "\nSECTION\n";
  const std::string zeros = Fill(66, ' ') + Fill(67, '0');
  table.Add("DXF", 0x0510,
            {"0\r\nSECTION\r\n2\r\nHEADER\r\n", "0\nSECTION\n", "0\rSECTION\r", "0\nSECTIONS\n", section, "\r\nSECTION\r\n", "000" + section,
             "0x5" + section, "EOF 5" + section, "- 5" + section, "-" + section, "\xA0" + ("5" + section), Fill(1) + "5" + section,
             "0" + Fill(1) + "5" + section, zeros + "\r\nSECTION\r\n", "0" + PadTo(134, "\nSECTION") + "\n", "AutoCAD Binary DXF"},
            {"0\r\rSECTION\r", "0\n\rSECTION\n\r", "0\nsection\n", "0\n  SECTION\n", "0\nSECTION", "0\r\n", "999" + section, "+5" + section,
             "-5" + section, zeros + "0\r\nSECTION\r\n", "0" + PadTo(135, "\nSECTION") + "\n"});
}

void RecordStreams(Table& table) {
  // The length bytes of marks are passed over: they lie here.
  const std::string open1 = "\x02\x50\x01\x7E";
  const std::string record1 = "\x02\x02\x01.";
  const std::string last1 = "\x02\x02\x01\x7F";
  const std::string open2 = "\x02\x50\x04\x7E";
  const std::string record2 = "\x02\x02\x04.";
  const std::string close2 = "\x02\x50\x04\x7F";
  const std::string filler = "\x01\x01.";
  const std::string third = "\x02\x02\x02\x7E";
  const std::string first = open1 + record1 + last1;
  const std::string second = open2 + record2 + close2;
  table.Add("0505", 0x0505,
            {"\x02.\0", third, "\x02\x03\0.."s + third, "\x02\x01\0..", filler + "\x01\0"s + third, "\x01\0.", first + filler + third,
             filler + open1 + last1 + third, open1, open1 + record1, open1 + Patch(record1, 1, "\x09"), first + second + third,
             first + filler + second + filler + third, open2 + Patch(record2, 1, "\x03"), second + ".."},
            {Fill(3), "\x02\0", "\x02\x03\x01.."s + third, open1 + Patch(record1, 0, "\x03") + last1 + third,
             Patch(open1, 3, "\x7F") + record1 + last1 + third, open1 + "\x02", first + "...", open2 + record2 + record2 + close2 + third,
             open2 + Patch(record2, 0, "\x03") + close2 + third, open2 + Patch(record2, 2, "\x01") + close2 + third,
             open2 + record2 + Patch(close2, 3, "\x80") + third, open2 + record2});
}

// The file with a header at `at`, of this version and with this number behind it.
std::string VisioFile(std::size_t size, std::size_t at, const std::string& version, const std::string& number = "\x01\0"s) {
  const std::string header = PadTo(24, "Visio (TM) Drawing\r\n") + version + Fill(6) + number;
  return Patch(Fill(at), at, header).append(size, '\0').substr(0, size);
}

void Visio(Table& table) {
  const std::string version2 = "\0\0\x02\0"s;
  const std::string version5 = "\0\0\x05\0"s;
  const std::string good = VisioFile(1'100, 512, version2);
  table.Add(
      "Visio", 0x0523,
      {VisioFile(540, 0, version2), VisioFile(540, 0, version2, Fill(2)), VisioFile(540, 0, "\x03\0\x03\0"s), VisioFile(540, 0, "\0\0\x04\0"s),
       VisioFile(540, 0, version5), VisioFile(540, 0, "\0\0\x06\0"s), good, VisioFile(20'000, 15'872, version2)},
      {VisioFile(539, 0, version2), VisioFile(540, 0, "\0\0\x01\0"s), VisioFile(540, 0, version5, "\x02\0"s), good.substr(0, 535) + Fill(5),
       Patch(good, 0, VisioFile(36, 0, Fill(4))), VisioFile(1'100, 1'000, version2), VisioFile(20'000, 16'384, version2), Patch(good, 531, " ")});
}

void CompoundRows(Table& table) {
  const std::string graphics = "\xFFQLX....\x01\x16......";
  const std::wstring main = L"ScriptoraDesk_MAIN";
  const std::string contents = "\xE8\xAC";
  table.Add("QLX graphics", 0x0507, {graphics, InStream(main, graphics), InStream(main, graphics, PadTo(16, CompoundHead()))},
            {graphics.substr(0, 15), Patch(graphics, 3, "Y"), InStream(main, Patch(graphics, 9, "\x0A")),
             InStream(main, graphics, PadTo(15, CompoundHead()))});
  table.Add("Publisher", 0x0545,
            {Named(L"picture.pub", "anything"), Named(L"a.b.PuB", "anything"), Named(L"C:\\x.doc\\picture.pub", "anything"),
             Named(L"a.pub", InStream(L"Contents", contents))},
            {Named(L"picture.pub/x", "anything"), Named(L"picture.pubx", "anything"), Named(L"pub", "anything"),
             Named(L"a.pub", InStream(L"Contents", "\xAC\xE8")), Named(L"a.pub", InStream(L"Contents", "\xE8")),
             Named(L"a.pub", InStream(L"Content", contents)), Named(L"a.doc", InStream(L"Contents", contents))});
}

}  // namespace

void VectorSamples(Table& table) {
  for (auto part : {Signatures, Cgm, Dxf, RecordStreams, Visio, CompoundRows}) part(table);
}

}  // namespace typescout::tests
