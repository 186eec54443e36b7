// Word-processor documents and plain text.
#include "tests/samples/sample.h"

namespace typescout::tests {
namespace {

constexpr const wchar_t* MAIN = L"ScriptoraDesk_MAIN";

// The header of a document with these two version bytes.
std::string Qlx(char major, char minor) { return "\xFFQLX....\x01\x0A"s + Fill(1, major) + Fill(1, minor) + "...."; }

void Scriptora(Table& table) {
  const std::string v6 = Qlx(2, 0);
  table.Add("QLX 0807", 0x0807, {v6, Qlx(2, 4), InStream(MAIN, Qlx(2, 2)), InStream(MAIN, Qlx(2, 4)), InStream(MAIN, Qlx(2, 3), Qlx(2, 1))},
            {Qlx(2, 5), Qlx(3, 0), Patch(v6, 0, "\xFE"), Patch(v6, 8, Fill(1)), Patch(v6, 8, "\x02"), Patch(v6, 9, "\x09"), Patch(v6, 9, "\x0B"),
             InStream(MAIN, Qlx(2, 1)), InStream(MAIN, Qlx(2, 3)), InStream(MAIN, Qlx(2, 5)), InStream(MAIN, Qlx(1, 4)),
             InStream(MAIN, Patch(Qlx(2, 4), 9, "\x16")), InStream(L"Contents", Qlx(2, 4))});
  table.Add("QLX 0808", 0x0808, {Qlx(0, 1)}, {Qlx(0, 1).substr(0, 15), Qlx(0, 2), Qlx(0, 0), Qlx(1, 1)});
  table.Add("QLX 0809", 0x0809, {Qlx(0, 0)}, {Qlx(0, 0).substr(0, 15), Qlx(0, 1), Qlx(1, 0)});
}

void Word(Table& table) {
  const auto document = [](char first, char second, int third, int fourth) {
    return PadTo(1'536, {first, second, static_cast<char>(third), static_cast<char>(fourth)});
  };
  const auto word = [&](char first, char second, int third, int fourth) { return InStream(L"WordDocument", document(first, second, third, fourth)); };
  // Every identifier in either byte order, at the least version that counts and one below.
  struct Identifier {
    char low, high;
    int leastVersion;
    FilterId filter;
  };
  const Identifier IDENTIFIERS[] = {{'\xDC', '\xA5', 101, 0x0801}, {'\xEC', '\xA5', 191, 0x0814}, {'\x97', '\xA6', 101, 0x0801},
                                    {'\x98', '\x80', 101, 0x0801}, {'\x99', '\xA6', 101, 0x0801}, {'\x99', '\x80', 101, 0x0801}};
  for (const auto& [low, high, least, filter] : IDENTIFIERS) {
    table.Add("Word", filter,
              {word(low, high, least, 0), word(low, high, 0xFF, 0xFF), word(low, high, 0, 1), word(high, low, 0, least), word(high, low, 1, 0)},
              {word(low, high, least - 1, 0), word(high, low, 0, least - 1)});
  }
  table.Add("Word 6", 0x0801, {}, {word('\xEC', '\xA5', 193, 0)});
  const std::string word8 = document('\xEC', '\xA5', 193, 0);
  table.Add("Word 8", 0x0814, {},
            {word('\xDC', '\xA5', 101, 0), InStream(L"WordDocument", word8.substr(0, 1'535)), InStream(L"Contents", word8),
             word('\xED', '\xA5', 193, 0), word8});
}

void Signatures(Table& table) {
  const std::string type0802 = PadTo(512, "\xDB\xA5-\0"s);
  const std::string type0803 = PadTo(256, "1\xBE");
  const std::string type0804 = PadTo(40, Patch("\xFE\x37", 22, "\x01"));
  const std::string framed = Patch("\x1D}\0\0p"s, 125, "}\0\x1D"s);
  const std::string ver = "[ver]\r\n\t4\r\n";
  const std::string a0812 = PadTo(30, "\0\0\x02\0\x04\x04"s);
  const std::string b0812 = Patch(PadTo(30, "\0\0\x1A\0\0\x10\x04\0"s), 20, "\x01");
  table.Add("0802", 0x0802, {type0802}, {type0802.substr(0, 511), Patch(type0802, 3, "\x01")});
  table.Add(
      "0803", 0x0803, {type0803, Patch(Patch(Patch(type0803, 5, "."), 95, "."), 98, ".")},
      {type0803.substr(0, 255), Patch(type0803, 2, "\x01"), Patch(type0803, 4, "\x01"), Patch(type0803, 96, "\x01"), Patch(type0803, 97, "\x01")});
  table.Add("0804", 0x0804, {type0804, Patch(type0804, 22, "\x02"), Patch(Patch(type0804, 19, "."), 24, ".")},
            {Patch(type0804, 22, "\x03"), type0804.substr(0, 39), Patch(type0804, 1, "8"), Patch(type0804, 20, "\x01"), Patch(type0804, 23, "\x01")});
  table.Add("RTF", 0x0805, {"{\\rtf1\\ans", "{\\RtF....."}, {"{\\rtf1\\an", "{\\rtg1\\ans", "{/rtf1/ans"});
  table.Add("080B", 0x080B, {"# VV # 5.0\n"}, {"# VV # 5.0", "# VV # 5.1\n", "# vv # 5.0\n"});
  table.Add("080C", 0x080C, {framed}, {framed.substr(0, 127), Patch(framed, 4, "q"), Patch(framed, 126, "\x01")});
  table.Add("WS2000", 0x080D, {"..WS2000.."}, {"..WS2000.", "..WS2001..", ".WS2000..."});
  table.Add("[ver]", 0x080F, {ver + "....", "[ver]\r\r\n\t4\r\r\n..", "[ver]\n\t4\n......", "...." + ver},
            {ver + "...", "[ver]\r\t4\r......", ".." + ver + "..", "[ver]\r\n\t5\r\n....", "[ver]\r\n\t4.\r\n..."});
  table.Add("0812", 0x0812, {a0812, Patch(a0812, 4, "\x0B"), b0812, Patch(b0812, 4, "\x02")},
            {Patch(a0812, 4, "\x03"), Patch(a0812, 4, "\x0C"), Patch(a0812, 5, "\x05"), a0812.substr(0, 29), Patch(a0812, 0, "\x01"),
             Patch(b0812, 4, "\x01"), Patch(b0812, 4, "\x03"), Patch(b0812, 3, "\x01"), Patch(b0812, 7, "\x01"), Patch(b0812, 20, "\x02"),
             b0812.substr(0, 29)});
}

// The row looks into a stream too, but of what does not open as a compound document; only a
// caller's own bytes beside such a file can be both.
void Type0813(Table& table) {
  const std::string record = "\0\0\x02\0"s;
  const std::string other = record + "......";
  const std::string content = "....\x07\x10....";
  table.Add("0813", 0x0813, {record + " Q....", record + "\x01\x10....", record + "\x02\x10....", InStream(MAIN, content, other)},
            {record + "\x03\x10....", record + " Q...", "\0\0\x02\x01 Q....", InStream(MAIN, content.substr(0, 9), other),
             InStream(MAIN, "....\x08\x10....", other), InStream(MAIN, "....\x07\x11....", other), InStream(L"Contents", content, other),
             InStream(MAIN, content, CompoundHead()), InStream(MAIN, content, other.substr(0, 9))});
}

// AE and AF stand for the guillemets. A letter behind a hexadecimal escape would belong to it, so
// the escapes end their literals.
#define AE "\xAE"
#define AF "\xAF"

void Guillemets(Table& table) {
  // Two commands about a closing byte, all in the middle of a long text: the first command, at
  // 30000, moves the position on by as much as the closing byte is away from the first AE, at 0.
  const auto wrapping = [](std::size_t closing) { return Patch(Patch(AE + Fill(49'999, '.'), 30'000, AE "AB"), closing, AF); };
  // Two signs of a command are enough. TS has one for each comma or closing byte among the six behind it.
  table.Add("guillemets", 0x080E, {AE "TS5,10" AF, AE "TS,,......", AE "TS....,,..........", AE "TS" AF ".."},
            {AE "TS5.10" AF, AE "TT,,,,,,,,", AE ",," AE "TS,.......", AE "TS,.......", AE "TS.....,,.........", AE "TS" AF ".",
             AE "ts,,.." AE "Ts,,.." AF});
  // Any command is one when a closing byte stands behind the first opening one.
  table.Add("guillemets", 0x080E, {AE "MDBO" AF "x" AE "XY"},
            {AE "MD" AF, AE "MD" AF "x.XYZ....", AE "MDBO" AF "x" AE "X", AE "MDBO" AF "x" AE "Xy", AE "MDBO" AF "x" AE "xY",
             AE "MDBO" AE "x" AE "XY", AF "MDBO" AF "x" AF "XY", AF "x" AE "MD" AE "XY....."});
  // The text ends at a zero byte; commands are looked for behind it too.
  table.Add("guillemets", 0x080E, {AE "MD" AF "\0" AE "XY", AE "..\0" AE "TS,,......"},
            {AE "MD\0" AF "x" AE "XY", AE ".\0" AE "TS,,......", AE "\0." AE "TS,,......", "\0" AE "MD" AF "x" AE "XY"});
  // Each command moves the position on by the distance from the first opening byte to the closing one.
  table.Add("guillemets", 0x080E, {AE "MD" AE "XY" AF AE "QQ", AE "....." AE "MD" AF "......" AE "AB...", wrapping(40'000), wrapping(35'535)},
            {AE "MD" AE "XY" AF "......", AE "....." AE "MD" AF "....." AE "AB....", wrapping(35'534)});
}

void Text(Table& table) {
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
  table.Add("text", 0x0901, {"x", "\t\n\f\rx", "x\x1A", Fill(4'999, 'x') + "\x1A" + Fill(9, 'x'), Fill(5'000, 'x') + Fill(9), "{\\rt f", "{\\rt"},
            {"", Fill(1), "\x0B", "\x0E", "x\x1B", "x\x1A\x1A", "{\\rtf", "{\\RtF1 x}"});
  table.Add("short-line text", 0x0903,
            {"\xE1", lines({100}),
             // What counts is where the last line ends: 201 and 202 here, over two lines.
             lines({100, 99}), Fill(300, 'x') + "\nx", Fill(300, 'x') + "\r", Fill(4'999, 'x') + "\r\n" + Fill(9, 'x'), lastPair},
            {"\xE2", "\xE2\xE1x", lines({101}), lines({100, 100})});
  table.Add("seven-bit text", 0x0902, {lines({60}), "x\x7F"}, {"x\x80y", "\x80" + lines({60}), lines({101}), Fill(200, 'x') + "\r\r\nx"});
}

}  // namespace

void DocumentSamples(Table& table) {
  for (auto part : {Scriptora, Word, Signatures, Type0813, Guillemets, Text}) part(table);
}

}  // namespace typescout::tests
