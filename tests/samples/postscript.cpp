#include "tests/samples/sample.h"

namespace typescout::tests {
namespace {

constexpr FilterId ILLUSTRATOR = 0x0503;

const std::string AI = "%%BoundingBox:\nA&L\n";

// A DOS EPS header with the four preview fields at 12, 16, 20 and 24 still zero.
const std::string DOS_EPS = PadTo(32, "\xC5\xD0\xD3\xC6");
const std::string DOS_EPS_WITH_TIFF = Patch(DOS_EPS, 24, "\x01");
const std::string DOS_EPS_OF_AI8 = DOS_EPS_WITH_TIFF + "%!PS-Adobe-3.0 EPSF-3.0\n%%Creator: Adobe Illustrator 8.0\n" + AI;

// An EPS file that is an Illustrator document when the creator's version allows it.
std::string EpsBy(const std::string& creator) { return "%!PS EPSF\n" + AI + creator; }

std::vector<File> AllEpsBy(std::vector<File> creators) {
  for (File& creator : creators) creator.bytes = EpsBy(creator.bytes);
  return creators;
}

void EpsSamples(Table& table) {
  table.Add("EPS", 0x0509,
            {"%!PS-Adobe-3.0 EPSF-3.0\n", "%!PSEPSF", "%!PS" + Fill(246, ' ') + "EPSF", Patch(DOS_EPS, 16, "\x01"), Patch(DOS_EPS, 20, "\x01"),
             Patch(DOS_EPS, 24, "\x01"), Patch(DOS_EPS, 12, "\xFF\xFF\xFF\x7F"), Patch(Patch(DOS_EPS, 12, "\x02"), 20, "\xFF\xFF\xFF\xFF"),
             Patch(Patch(DOS_EPS, 16, "\x02"), 24, "\xFF\xFF\xFF\xFF"), DOS_EPS_OF_AI8,
             For(ILLUSTRATOR, DOS_EPS_WITH_TIFF + "\n%%Creator: Adobe Illustrator 9.0\n" + AI), EpsBy("%%Creator: 9.0"),
             "%!PS EPSF\n%%Creator: 8.0\n%%BoundingBox:"},
            {"%!PTEPSF", "\n%!PSEPSF", "%!PS\nEPSF", "%!PS\0EPSF", "%!PS" + Fill(247, ' ') + "EPSF", "%!P", DOS_EPS_WITH_TIFF.substr(0, 31),
             Patch(Patch(DOS_EPS, 11, "\x01"), 28, "\x01"), Patch(DOS_EPS, 15, "\x80"), Patch(DOS_EPS, 12, "\xFF\xFF\xFF\xFF\x01"),
             For(ILLUSTRATOR, DOS_EPS_OF_AI8), EpsBy("%%Creator: 8.0")});
}

void JobSamples(Table& table) {
  table.Add("PostScript", 0x050A, {"%!PS", "%!\r\n", "\x04%!P", "\x1B%-12345", "z%-12345", "\xC5\xD0\xD3\xC6", For(ILLUSTRATOR, DOS_EPS_OF_AI8)},
            {"%!P", "\x04%!", "\x05%!P", "%-12345XX", "%!PS\n" + AI, "\x04%!PS\n" + AI, "\xC5\xD0\xD3\xC7"});
}

void IllustratorSamples(Table& table) {
  const std::string box = "%%BoundingBox:\n";
  table.Add("AI", 0x0503,
            {"%%BoundingBox:\nA&L", "Adobe Illustrator\r%%BoundingBox:", box + "x Adobe_Illustrator 7", box + "Adobe Illustrator\nx\n",
             box + "Adobe_Illustrator\nx\n"},
            {"%%BoundingBox\nA&L", "", "\r\n\r\n"});
  // The box and the mark on one line; what stands behind a box or a colon does not count.
  table.Add("AI", 0x0503, {"A&L%%BoundingBox:", "::A&L%%BoundingBox:"}, {"%%BoundingBox:A&L", ":x:A&L%%BoundingBox:", box + "%%BoundingBox:A&L"});
  // The line that ends the setup is the last that counts.
  table.Add("AI", 0x0503, {box + "%%EndSetup A&L", "A&L\n%%EndSetup%%BoundingBox:", "%%BoundingBox:%%EndSetup\nA&L"},
            {"A&L\n%%EndSetup\n%%BoundingBox:", box + "%%EndSetup\nA&L", "%%EndSetup%%BoundingBox:\nA&L"});
  // A zero byte hides the rest of its line. A line of more than 159 bytes is cut into pieces of 159,
  // and the byte behind each piece is dropped.
  table.Add("AI", 0x0503,
            {box + "x\0y\nA&L"s, Fill(145, 'x') + "%%BoundingBox:xA&L", box + Fill(476, 'x') + "A&L", box + Fill(480, 'x') + "A&L",
             box + Fill(159, 'x') + "\nA&L", box + Fill(159, 'x') + "\r\nA&L", box + Fill(20000, '\n') + Fill(20000, '\0') + "\nA&L",
             "\0A&L\n\0"s + AI + AI},
            {box + "x\0A&L"s, Fill(146, 'x') + "%%BoundingBox:A&L", box + Fill(477, 'x') + "A&L", box + Fill(479, 'x') + "A&L"});
  // EPSF and the DOS EPS magic count in the first line only.
  table.Add("AI", 0x0503, {"%\nEPSF\n%%Creator: 9.0\n" + AI, For(ILLUSTRATOR, DOS_EPS_OF_AI8), "x\xC5\xD0\xD3\xC6\n" + AI},
            {"%PDF-1\n" + AI, DOS_EPS_OF_AI8, "\n\xC5\xD0\xD3\xC6\n" + AI});
}

// What a PJL job start in the first line does to the Illustrator test.
void PjlSamples(Table& table) {
  const std::string pjl = "\x1B%-12345X@PJL JOB\n";
  const std::string enter = "@PJL ENTER LANGUAGE=POSTSCRIPT\n";
  const std::string sameLine = "A&L%%BoundingBox:%-12345X@PJL";
  table.Add("AI", 0x0503,
            {pjl + enter + "%!PS-Zdobe EPSG\n" + AI, pjl + "@PJL\n" + enter + "EPSF\n" + AI, "%\n" + pjl + enter + "EPSF\n" + AI,
             pjl + "A&L\n%%BoundingBox:", pjl + enter + "A&L\n%%BoundingBox:", sameLine, sameLine + "@PJL ENTER LANGUAGE=POSTSCRIPT",
             sameLine + "%!PS-Adobe"},
            {pjl + enter + "%!PS-Adobe-3.0\n" + AI, pjl + enter + "% EPSF\n" + AI, "%-12345X@PJL A&L\nx\n%%BoundingBox:",
             pjl + "@PJL ENTER LANGUAGE=POSTSCRIPT A&L\nx\n%%BoundingBox:", sameLine + "@PJL ENTER LANGUAGE=POSTSCRIPT%!PS-Adobe"});
}

// The creator's version, as an Illustrator document that calls itself EPSF shows it.
void VersionSamples(Table& table) {
  table.Add("AI", 0x0503,
            AllEpsBy({"%%Creator: 8.0",
                      "%%Creator: 8.00",
                      "%%Creator: 0.01",
                      "%%Creator: 8.",
                      "%%Creator: .5",
                      ".5 %%Creator:",
                      Fill(159, 'x') + "98.0 %%Creator:",
                      "%%Creator: 7.5.9",
                      "%%Creator: 8.0e5",
                      "%%Creator: -8.0",
                      "%%Creator: 9/8.0",
                      "%%Creator: 9:8.0",
                      "%%Creator: 7.9:",
                      "%%Creator: " + Fill(140, '0') + "7.5",
                      "%%Creator: ." + Fill(140, '0') + "5",
                      "%%Creator: 9.0\n%%AI8_CreatorVersion: 8.0",
                      "%%Creator: 8.0\n%%AI9_CreatorVersion: 9.0",
                      "%%Creator: 8.0\n%\n%%AI8_CreatorVersion: 9.0",
                      "%%EndSetup %%Creator: 8.0",
                      "%%EndSetu\n%%Creator: 8.0",
                      "\0%%Creator: 9.0\n%%Creator: 8.0",
                      Fill(159, 'x') + "%%Creator: 9.0\n%%Creator: 8.0"}),
            AllEpsBy({"%%Creator: 8.01", "%%Creator: 9.0", "%%Creator: 10.0", "%%Creator: 0.0", "%%Creator: 8", "%%Creator: 9.",
                      "8.5 %%Creator:", "%%Creator: .", "%%Creator: a.b 8.0", "%%Creator: 1" + Fill(140, '0') + ".5", "%%Creator: \08.0",
                      "%%creator: 8.0", "%%Creator 8.0", "%%Creator: 8.0\n%%AI8_CreatorVersion: 13.0.0",
                      "%%Creator: 8.0\r\n\r\n%%AI8_CreatorVersion: 9.0", "%%Creator: 8.0\n%%AI8_CreatorVersion: 8", "%%Creator: 9.0\n%%Creator: 8.0",
                      "%%EndSetup\n%%Creator: 8.0", Fill(149, 'x') + "%%Creator: 8.0"}));
  // Halfway from 8 to the next double: the largest number that is read as 8.
  const std::string halfway = "%%Creator: 008.00000000000000088817841970012523233890533447265625";
  table.Add("AI", 0x0503, AllEpsBy({halfway}), AllEpsBy({halfway + "01"}));
}

void PdfSamples(Table& table) { table.Add("AI PDF", 0x0535, {"%PDF-1", "%PDF-\0"}, {"%PDF-"}); }

void HpglSamples(Table& table) {
  table.Add("HP-GL", 0x0501, {"IN;", "in;", "INSP1", "SP1;", "IN SP1,", "IN,SP 8", "IN PU SP3", "SP 1;IN;", "\x03\n\r\x1A ,;IN;"},
            {"IN", "SP1", "SP2;xx;", "SP12;IN;", "IN,SP9;xx;", "IN,SP0;xx;", "IN,SP  1;xx", "SP 1;xx;", "Hello, world;"});
  // What is passed over: XON, and each instruction with its parameters.
  table.Add("HP-GL", 0x0501,
            {"\x11xIN;", "DFIN;", "DT<IN;", "DT;IN;", "LBxx;\x03IN;", "LB\x03IN;", "PExx<1;IN;", "PE;IN;", "PA10,20;,IN;", "PA10,20IN;",
             "PA10\x1B.AIN;", "PA;1;IN;"},
            {"\x11IN;;", "\x13xIN;", "DF1IN;", "B[10;IN;", "DT**IN;", "LBxx;IN;", "PExx<1 IN SP1", "PA1;1;IN;", "PA10,20"});
  // The beginning of a printer job.
  table.Add("HP-GL", 0x0501, {"\x04%!", "\x1B%-12345X@PJL", "x%-12345"}, {"\x05%!", "\x1B%-12345X   ", "\x1B%-12345XPA1"});
  // At most 1,024 bytes are looked at.
  table.Add("HP-GL", 0x0501, {Fill(1021, ' ') + "IN;", Fill(1021, ' ') + "IN; SP1;", Fill(1021, ' ') + "INSP1", "LB" + Fill(1018, 'x') + "\x03IN;"},
            {Fill(1022, ' ') + "IN; SP1;", "LB" + Fill(1019, 'x') + "\x03IN;", "IN,LB" + Fill(1019, 'x') + "\x03SP1;"});
}

// Escape sequences by their second and third byte; what follows tells where they were held to end.
void EscapeSamples(Table& table) {
  table.Add("HP-GL", 0x0501,
            {"\x1B.A;IN;", "\x1B.Ax;IN;", "\x1B.)xIN;x\x1B.AIN;", "\x1B.)\x1B.AIN;", ";\x1B.@1:IN;", "\x1B%-1234.XIN;", "\x1B%-12IN;", "\x1B%0BIN;",
             "\x1B&l0oIN;", "\x1B*c1TIN;", "\x1B*c1YIN;", "\x1B.;IN;", "\033E\x1B.AIN;", "\x1B.PU;IN;", "\x1B.SP1;"},
            {"\x1B.)IN;", "\x1B%-1234.xIN;", "\x1B$0BIN;", "\x1B&-1234.XIN;", "\x1B&l0IN;", "\x1B*c1tIN;"});
  for (const char third : "(ABEJKLORUYZ"s) table.Add("HP-GL", 0x0501, {"\x1B."s + third + "IN;"}, {});
  for (const char third : "CDFGVWX"s) table.Add("HP-GL", 0x0501, {}, {"\x1B."s + third + "IN;"});
  for (const char third : "@HIMNT"s) {
    const std::string escape = "\x1B."s + third;
    table.Add("HP-GL", 0x0501, {escape + ":IN;", escape + "1;IN;2:IN;"}, {escape + "1;IN;"});
  }
  for (const char third : "PQS"s) {
    const std::string escape = "\x1B."s + third;
    table.Add("HP-GL", 0x0501, {escape + ";IN;", escape + "305;IN;"}, {escape + "305,IN;", escape + "3:5;IN;"});
  }
}

}  // namespace

void PostscriptSamples(Table& table) {
  for (auto part : {EpsSamples, JobSamples, IllustratorSamples, PjlSamples, VersionSamples, PdfSamples, HpglSamples, EscapeSamples}) part(table);
}

}  // namespace typescout::tests
