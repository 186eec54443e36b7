// Word-processor documents and plain text.
#include "detectors/documents/documents.h"

#include <iterator>

#include "tests/samples/sample.h"

namespace typescout::tests {
namespace {

std::string CompoundHead() { return PadTo(64, "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"); }

// A compound document with one stream.
Sample Compound(const std::string& name, Detector detector, const std::wstring& stream, const std::string& content, Verdict verdict) {
  return {name, detector, CompoundHead(), verdict, L"sample", 0, {{stream, content}}};
}

constexpr const wchar_t* MAIN = L"ScriptoraDesk_MAIN";

// The header of a document with these two version bytes.
std::string Qlx(char major, char minor) { return Bytes("\xFFQLX....\x01\x0A") + Fill(1, major) + Fill(1, minor) + "...."; }

std::vector<Sample> Scriptora() {
  const std::string v6 = Qlx(2, 0);
  Sample headDecides = Compound("QLX 2.1 with a stream 2.3", DetectScriptora0807, MAIN, Qlx(2, 3), YES);
  headDecides.bytes = Qlx(2, 1);
  return {
      {"QLX 2.0", DetectScriptora0807, v6, YES},
      {"QLX 2.4", DetectScriptora0807, Qlx(2, 4), YES},
      {"QLX 2.5", DetectScriptora0807, Qlx(2, 5), NO},
      {"QLX 3.0", DetectScriptora0807, Qlx(3, 0), NO},
      {"QLX 2.0, first byte off", DetectScriptora0807, Patch(v6, 0, "\xFE"), NO},
      {"QLX 2.0, product 0", DetectScriptora0807, Patch(v6, 8, Fill(1)), NO},
      {"QLX 2.0, product 2", DetectScriptora0807, Patch(v6, 8, "\x02"), NO},
      {"QLX 2.0, type 9", DetectScriptora0807, Patch(v6, 9, "\x09"), NO},
      {"QLX 2.0, type 11", DetectScriptora0807, Patch(v6, 9, "\x0B"), NO},
      Compound("QLX stream 2.2", DetectScriptora0807, MAIN, Qlx(2, 2), YES),
      Compound("QLX stream 2.4", DetectScriptora0807, MAIN, Qlx(2, 4), YES),
      Compound("QLX stream 2.1", DetectScriptora0807, MAIN, Qlx(2, 1), NO),
      Compound("QLX stream 2.3", DetectScriptora0807, MAIN, Qlx(2, 3), NO),
      Compound("QLX stream 2.5", DetectScriptora0807, MAIN, Qlx(2, 5), NO),
      Compound("QLX stream 1.4", DetectScriptora0807, MAIN, Qlx(1, 4), NO),
      Compound("QLX stream 2.4 of graphics", DetectScriptora0807, MAIN, Patch(Qlx(2, 4), 9, "\x16"), NO),
      Compound("QLX stream 2.4 by another name", DetectScriptora0807, L"Contents", Qlx(2, 4), NO),
      std::move(headDecides),

      {"QLX 0.1", DetectScriptora0808, Qlx(0, 1), YES},
      {"QLX 0.1 of 15 bytes", DetectScriptora0808, Qlx(0, 1).substr(0, 15), NO},
      {"QLX 0.2", DetectScriptora0808, Qlx(0, 2), NO},
      {"QLX 0.0 as 0.1", DetectScriptora0808, Qlx(0, 0), NO},
      {"QLX 1.1", DetectScriptora0808, Qlx(1, 1), NO},
      {"QLX 0.0", DetectScriptora0809, Qlx(0, 0), YES},
      {"QLX 0.0 of 15 bytes", DetectScriptora0809, Qlx(0, 0).substr(0, 15), NO},
      {"QLX 0.1 as 0.0", DetectScriptora0809, Qlx(0, 1), NO},
      {"QLX 1.0 as 0.0", DetectScriptora0809, Qlx(1, 0), NO},
  };
}

std::vector<Sample> Word() {
  const auto document = [](const std::string& opening) { return PadTo(1'536, opening); };
  const auto opening = [](char first, char second, int third, int fourth) {
    return std::string{first, second, static_cast<char>(third), static_cast<char>(fourth)};
  };
  // Every identifier in either byte order, at the least version that counts and one below.
  struct Identifier {
    std::string bytes;
    int leastVersion;
    Detector detector;
  };
  const Identifier IDENTIFIERS[] = {
      {"\xDC\xA5", 101, DetectWordDocument6}, {"\xEC\xA5", 191, DetectWordDocument8}, {"\x97\xA6", 101, DetectWordDocument6},
      {"\x98\x80", 101, DetectWordDocument6}, {"\x99\xA6", 101, DetectWordDocument6}, {"\x99\x80", 101, DetectWordDocument6},
  };
  std::vector<Sample> all;
  int number = 0;
  for (const auto& [bytes, least, detector] : IDENTIFIERS) {
    const std::string name = "Word identifier " + std::to_string(++number);
    const char low = bytes[0];
    const char high = bytes[1];
    const std::pair<std::string, Verdict> OPENINGS[] = {
        {opening(low, high, least, 0), YES}, {opening(low, high, least - 1, 0), NO}, {opening(low, high, 0xFF, 0xFF), YES},
        {opening(low, high, 0, 1), YES},     {opening(high, low, 0, least), YES},    {opening(high, low, 0, least - 1), NO},
        {opening(high, low, 1, 0), YES},
    };
    for (const auto& [start, verdict] : OPENINGS) {
      all.push_back(Compound(name + ", opening " + std::to_string(all.size()), detector, L"WordDocument", document(start), verdict));
    }
  }
  const std::string word8 = Bytes("\xEC\xA5\xC1\0");
  const std::string word6 = Bytes("\xDC\xA5\x65\0");
  for (const Sample& sample : {
           Compound("Word 8 as 6", DetectWordDocument6, L"WordDocument", document(word8), NO),
           Compound("Word 6 as 8", DetectWordDocument8, L"WordDocument", document(word6), NO),
           Compound("Word 8 of 1535 bytes", DetectWordDocument8, L"WordDocument", document(word8).substr(0, 1'535), NO),
           Compound("Word 8 in another stream", DetectWordDocument8, L"Contents", document(word8), NO),
           Compound("Word, identifier unknown", DetectWordDocument8, L"WordDocument", document(Bytes("\xED\xA5\xC1\0")), NO),
           Sample{"Word 8 without a compound document", DetectWordDocument8, document(word8), NO},
       }) {
    all.push_back(sample);
  }
  return all;
}

std::vector<Sample> Signatures() {
  const std::string type0802 = PadTo(512, Bytes("\xDB\xA5-\0"));
  const std::string type0803 = PadTo(256, Bytes("1\xBE"));
  const std::string type0804 = PadTo(40, Patch("\xFE\x37", 22, "\x01"));
  const std::string framed = Patch(Bytes("\x1D}\0\0p"), 125, Bytes("}\0\x1D"));
  const std::string ver = "[ver]\r\n\t4\r\n";
  const std::string a0812 = PadTo(30, Bytes("\0\0\x02\0\x04\x04"));
  const std::string b0812 = Patch(PadTo(30, Bytes("\0\0\x1A\0\0\x10\x04\0")), 20, "\x01");
  return {
      {"0802", DetectFilter0802, type0802, YES},
      {"0802 of 511 bytes", DetectFilter0802, type0802.substr(0, 511), NO},
      {"0802 byte 3 off", DetectFilter0802, Patch(type0802, 3, "\x01"), NO},

      {"0803", DetectFilter0803, type0803, YES},
      {"0803 of 255 bytes", DetectFilter0803, type0803.substr(0, 255), NO},
      {"0803 byte 2 off", DetectFilter0803, Patch(type0803, 2, "\x01"), NO},
      {"0803 byte 4 off", DetectFilter0803, Patch(type0803, 4, "\x01"), NO},
      {"0803 bytes 5 and 95 and 98 free", DetectFilter0803, Patch(Patch(Patch(type0803, 5, "."), 95, "."), 98, "."), YES},
      {"0803 byte 96 off", DetectFilter0803, Patch(type0803, 96, "\x01"), NO},
      {"0803 byte 97 off", DetectFilter0803, Patch(type0803, 97, "\x01"), NO},

      {"0804 kind 1", DetectFilter0804, type0804, YES},
      {"0804 kind 2", DetectFilter0804, Patch(type0804, 22, "\x02"), YES},
      {"0804 kind 3", DetectFilter0804, Patch(type0804, 22, "\x03"), NO},
      {"0804 of 39 bytes", DetectFilter0804, type0804.substr(0, 39), NO},
      {"0804 byte 1 off", DetectFilter0804, Patch(type0804, 1, "8"), NO},
      {"0804 byte 20 off", DetectFilter0804, Patch(type0804, 20, "\x01"), NO},
      {"0804 byte 23 off", DetectFilter0804, Patch(type0804, 23, "\x01"), NO},
      {"0804 bytes 19 and 24 free", DetectFilter0804, Patch(Patch(type0804, 19, "."), 24, "."), YES},

      {"RTF", DetectRtf, "{\\rtf1\\ans", YES},
      {"RTF in other cases", DetectRtf, "{\\RtF.....", YES},
      {"RTF of 9 bytes", DetectRtf, "{\\rtf1\\an", NO},
      {"RTF with a g", DetectRtf, "{\\rtg1\\ans", NO},
      {"RTF with a slash", DetectRtf, "{/rtf1/ans", NO},

      {"080B", DetectFilter080B, "# VV # 5.0\n", YES},
      {"080B of 10 bytes", DetectFilter080B, "# VV # 5.0", NO},
      {"080B 5.1", DetectFilter080B, "# VV # 5.1\n", NO},
      {"080B in lower case", DetectFilter080B, "# vv # 5.0\n", NO},

      {"080C", DetectFilter080C, framed, YES},
      {"080C of 127 bytes", DetectFilter080C, framed.substr(0, 127), NO},
      {"080C without the first frame", DetectFilter080C, Patch(framed, 4, "q"), NO},
      {"080C without the last frame", DetectFilter080C, Patch(framed, 126, "\x01"), NO},

      {"WS2000", DetectWs2000, "..WS2000..", YES},
      {"WS2000 of 9 bytes", DetectWs2000, "..WS2000.", NO},
      {"WS2001", DetectWs2000, "..WS2001..", NO},
      {"WS2000 one byte early", DetectWs2000, ".WS2000...", NO},

      {"[ver] with CR LF", DetectVerHeader, ver + "....", YES},
      {"[ver] with CR LF, 14 bytes", DetectVerHeader, ver + "...", NO},
      {"[ver] with CR CR LF", DetectVerHeader, "[ver]\r\r\n\t4\r\r\n..", YES},
      {"[ver] with LF", DetectVerHeader, "[ver]\n\t4\n......", YES},
      {"[ver] with CR", DetectVerHeader, "[ver]\r\t4\r......", NO},
      {"[ver] with CR LF at 4", DetectVerHeader, "...." + ver, YES},
      {"[ver] with CR LF at 2", DetectVerHeader, ".." + ver + "..", NO},
      {"[ver] 5", DetectVerHeader, "[ver]\r\n\t5\r\n....", NO},
      {"[ver] 4 and more", DetectVerHeader, "[ver]\r\n\t4.\r\n...", NO},

      {"0812 a, 4", DetectFilter0812, a0812, YES},
      {"0812 a, 11", DetectFilter0812, Patch(a0812, 4, "\x0B"), YES},
      {"0812 a, 3", DetectFilter0812, Patch(a0812, 4, "\x03"), NO},
      {"0812 a, 12", DetectFilter0812, Patch(a0812, 4, "\x0C"), NO},
      {"0812 a, byte 5 off", DetectFilter0812, Patch(a0812, 5, "\x05"), NO},
      {"0812 a of 29 bytes", DetectFilter0812, a0812.substr(0, 29), NO},
      {"0812 a, byte 0 off", DetectFilter0812, Patch(a0812, 0, "\x01"), NO},
      {"0812 b, 0", DetectFilter0812, b0812, YES},
      {"0812 b, 2", DetectFilter0812, Patch(b0812, 4, "\x02"), YES},
      {"0812 b, 1", DetectFilter0812, Patch(b0812, 4, "\x01"), NO},
      {"0812 b, 3", DetectFilter0812, Patch(b0812, 4, "\x03"), NO},
      {"0812 b, byte 3 off", DetectFilter0812, Patch(b0812, 3, "\x01"), NO},
      {"0812 b, byte 7 off", DetectFilter0812, Patch(b0812, 7, "\x01"), NO},
      {"0812 b, byte 20 off", DetectFilter0812, Patch(b0812, 20, "\x02"), NO},
      {"0812 b of 29 bytes", DetectFilter0812, b0812.substr(0, 29), NO},
  };
}

// The row looks into a stream too, but of what does not open as a compound document; only a
// caller's own bytes beside such a file can be both.
std::vector<Sample> Type0813() {
  const std::string record = Bytes("\0\0\x02\0");
  const std::string other = record + "......";
  const std::string content = Bytes("....\x07\x10....");
  const auto both = [](const std::string& name, const std::string& bytes, const std::wstring& stream, const std::string& inStream, Verdict verdict) {
    return Sample{name, DetectFilter0813, bytes, verdict, L"sample", 0, {{stream, inStream}}};
  };
  return {
      {"0813 20 51", DetectFilter0813, record + " Q....", YES},
      {"0813 01 10", DetectFilter0813, record + "\x01\x10....", YES},
      {"0813 02 10", DetectFilter0813, record + "\x02\x10....", YES},
      {"0813 03 10", DetectFilter0813, record + "\x03\x10....", NO},
      {"0813 20 51 of 9 bytes", DetectFilter0813, record + " Q...", NO},
      {"0813 20 51, byte 3 off", DetectFilter0813, Bytes("\0\0\x02\x01 Q...."), NO},
      both("0813 stream", other, MAIN, content, YES),
      both("0813 stream of 9 bytes", other, MAIN, content.substr(0, 9), NO),
      both("0813 stream 08 10", other, MAIN, Bytes("....\x08\x10...."), NO),
      both("0813 stream 07 11", other, MAIN, Bytes("....\x07\x11...."), NO),
      both("0813 stream by another name", other, L"Contents", content, NO),
      both("0813 stream, no record in the head", CompoundHead(), MAIN, content, NO),
      both("0813 stream, head of 9 bytes", other.substr(0, 9), MAIN, content, NO),
  };
}

// AE and AF stand for the guillemets. A letter behind a hexadecimal escape would belong to it, so
// the escapes end their literals.
#define AE "\xAE"
#define AF "\xAF"

std::vector<Sample> Guillemets() {
  const Detector detector = DetectGuillemetCommands;
  // Two commands about a closing byte, all in the middle of a long text: the first command, at
  // 30000, moves the position on by as much as the closing byte is away from the first AE, at 0.
  const auto wrapping = [](std::size_t closing) { return Patch(Patch(AE + Fill(49'999, '.'), 30'000, AE "AB"), closing, AF); };
  return {
      {"«TS5,10»", detector, AE "TS5,10" AF, YES},
      {"«TS5.10»", detector, AE "TS5.10" AF, NO},
      {"«TT,,,,»", detector, AE "TT,,,,,,,,", NO},
      {"«TS,, unclosed", detector, AE "TS,,......", YES},
      {",,«TS, unclosed", detector, AE ",," AE "TS,.......", NO},
      {"«TS, unclosed", detector, AE "TS,.......", NO},
      {"«TS with commas at 7 and 8", detector, AE "TS....,,..........", YES},
      {"«TS with commas at 8 and 9", detector, AE "TS.....,,.........", NO},
      {"«TS» counts its closing twice", detector, AE "TS" AF "..", YES},
      {"«TS» at the limit", detector, AE "TS" AF ".", NO},
      {"«ts,,», «Ts,,»", detector, AE "ts,,.." AE "Ts,,.." AF, NO},
      {"«MD»", detector, AE "MD" AF, NO},
      {"«MDBO»x«XY", detector, AE "MDBO" AF "x" AE "XY", YES},
      {"«MD»x.XYZ", detector, AE "MD" AF "x.XYZ....", NO},
      {"«MDBO»x«X", detector, AE "MDBO" AF "x" AE "X", NO},
      {"«MDBO»x«Xy", detector, AE "MDBO" AF "x" AE "Xy", NO},
      {"«MDBO»x«xY", detector, AE "MDBO" AF "x" AE "xY", NO},
      {"«MDBO«x«XY", detector, AE "MDBO" AE "x" AE "XY", NO},
      {"»MDBO»x»XY", detector, AF "MDBO" AF "x" AF "XY", NO},
      {"»x«MD«XY before any closing", detector, AF "x" AE "MD" AE "XY.....", NO},
      {"«MD0»x«XY, the closing behind a zero byte", detector, Bytes(AE "MD\0" AF "x" AE "XY"), NO},
      {"«MD»x«XY, the second behind a zero byte", detector, Bytes(AE "MD" AF "\0" AE "XY"), YES},
      {"«TS,, behind a zero byte at 3", detector, Bytes(AE "..\0" AE "TS,,......"), YES},
      {"«TS,, behind a zero byte at 2", detector, Bytes(AE ".\0" AE "TS,,......"), NO},
      {"«TS,, behind a zero byte at 1", detector, Bytes(AE "\0." AE "TS,,......"), NO},
      {"«MD»x«XY behind a zero byte at 0", detector, Bytes("\0" AE "MD" AF "x" AE "XY"), NO},
      {"«MD«XY»«QQ, the second passed over", detector, AE "MD" AE "XY" AF AE "QQ", YES},
      {"«MD«XY», the second passed over", detector, AE "MD" AE "XY" AF "......", NO},
      {"«.....«MD»......«AB, reached", detector, AE "....." AE "MD" AF "......" AE "AB...", YES},
      {"«.....«MD».....«AB, passed over", detector, AE "....." AE "MD" AF "....." AE "AB....", NO},
      {"«, position beyond 65535 and round again", detector, wrapping(40'000), YES},
      {"«, position 65535 and round again", detector, wrapping(35'535), YES},
      {"«, position 65534", detector, wrapping(35'534), NO},
  };
}

std::vector<Sample> Text() {
  // Lines of `length` characters with CR LF behind each but the last.
  const auto lines = [](std::initializer_list<std::size_t> lengths) {
    std::string text;
    for (const std::size_t length : lengths) text += Fill(length, 'x') + "\r\n";
    return text + "x";
  };
  // Of the first 4999 bytes' lines, 49 in number, the average is 101; the last pair, which ends at
  // the 5000th byte, makes it 99.
  std::string lastPair = Fill(6'000, 'x');
  for (std::size_t i = 0; i < 48; ++i) lastPair.replace(i * 10, 2, "\r\n");
  lastPair.replace(4'960, 2, "\r\n").replace(4'998, 2, "\r\n");
  return {
      {"Text of one character", DetectAnyText, "x", YES},
      {"Text, empty", DetectAnyText, "", NO},
      {"Text with all its controls", DetectAnyText, "\t\n\f\rx", YES},
      {"Text with 00", DetectAnyText, Fill(1), NO},
      {"Text with 0B", DetectAnyText, "\x0B", NO},
      {"Text with 0E", DetectAnyText, "\x0E", NO},
      {"Text with a last 1A", DetectAnyText, "x\x1A", YES},
      {"Text with a last 1B", DetectAnyText, "x\x1B", NO},
      {"Text with 1A before the last", DetectAnyText, "x\x1A\x1A", NO},
      {"Text, its 5000th byte 1A", DetectAnyText, Fill(4'999, 'x') + "\x1A" + Fill(9, 'x'), YES},
      {"Text, its 5001st byte 00", DetectAnyText, Fill(5'000, 'x') + Fill(9), YES},
      {"Text opening {\\rtf", DetectAnyText, "{\\rtf", NO},
      {"Text opening {\\RtF", DetectAnyText, "{\\RtF1 x}", NO},
      {"Text opening {\\rt f", DetectAnyText, "{\\rt f", YES},
      {"Text opening {\\rt", DetectAnyText, "{\\rt", YES},

      {"Short text with E1", DetectShortLineText, "\xE1", YES},
      {"Short text with E2", DetectShortLineText, "\xE2", NO},
      {"Short text, E2 then E1", DetectShortLineText, "\xE2\xE1x", NO},
      {"Short text, line of 100", DetectShortLineText, lines({100}), YES},
      {"Short text, line of 101", DetectShortLineText, lines({101}), NO},
      // What counts is where the last line ends: 201 and 202 here, over two lines.
      {"Short text, two lines, average below 101", DetectShortLineText, lines({100, 99}), YES},
      {"Short text, two lines, average 101", DetectShortLineText, lines({100, 100}), NO},
      {"Short text, 300 characters and LF", DetectShortLineText, Fill(300, 'x') + "\nx", YES},
      {"Short text, 300 characters and a last CR", DetectShortLineText, Fill(300, 'x') + "\r", YES},
      {"Short text, CR as the 5000th byte", DetectShortLineText, Fill(4'999, 'x') + "\r\n" + Fill(9, 'x'), YES},
      {"Short text, LF as the 5000th byte", DetectShortLineText, lastPair, YES},

      {"Seven-bit text", DetectSevenBitText, lines({60}), YES},
      {"Seven-bit text with 7F", DetectSevenBitText, "x\x7F", YES},
      {"Seven-bit text with 80", DetectSevenBitText, "x\x80y", NO},
      {"Seven-bit text with 80 in lines", DetectSevenBitText, "\x80" + lines({60}), NO},
      {"Seven-bit text with long lines", DetectSevenBitText, lines({101}), NO},
      {"Seven-bit text with a long line behind a lone CR", DetectSevenBitText, Fill(200, 'x') + "\r\r\nx", NO},
  };
}

}  // namespace

std::vector<Sample> DocumentSamples() {
  std::vector<Sample> all;
  for (auto group : {Scriptora, Word, Signatures, Type0813, Guillemets, Text}) {
    std::vector<Sample> samples = group();
    std::move(samples.begin(), samples.end(), std::back_inserter(all));
  }
  return all;
}

}  // namespace typescout::tests
