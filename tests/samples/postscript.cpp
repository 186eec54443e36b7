#include "detectors/postscript/postscript.h"

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

std::vector<Sample> EpsSamples() {
  return {
      {"EPS", DetectEps, "%!PS-Adobe-3.0 EPSF-3.0\n", YES},
      {"EPS, smallest", DetectEps, "%!PSEPSF", YES},
      {"EPS opening with %!PT", DetectEps, "%!PTEPSF", NO},
      {"EPS behind an empty line", DetectEps, "\n%!PSEPSF", NO},
      {"EPS mark in the second line", DetectEps, "%!PS\nEPSF", NO},
      {"EPS mark behind a zero byte", DetectEps, Bytes("%!PS\0EPSF"), NO},
      {"EPS mark up to byte 254", DetectEps, "%!PS" + Fill(246, ' ') + "EPSF", YES},
      {"EPS mark up to byte 255", DetectEps, "%!PS" + Fill(247, ' ') + "EPSF", NO},
      {"EPS cut to 3 bytes", DetectEps, "%!P", NO},

      {"DOS EPS with a metafile's length", DetectEps, Patch(DOS_EPS, 16, "\x01"), YES},
      {"DOS EPS with a TIFF's offset", DetectEps, Patch(DOS_EPS, 20, "\x01"), YES},
      {"DOS EPS with a TIFF's length", DetectEps, Patch(DOS_EPS, 24, "\x01"), YES},
      {"DOS EPS cut to 31 bytes", DetectEps, DOS_EPS_WITH_TIFF.substr(0, 31), NO},
      {"DOS EPS without a preview", DetectEps, Patch(Patch(DOS_EPS, 11, "\x01"), 28, "\x01"), NO},
      {"DOS EPS with the largest sum", DetectEps, Patch(DOS_EPS, 12, "\xFF\xFF\xFF\x7F"), YES},
      {"DOS EPS with a negative sum", DetectEps, Patch(DOS_EPS, 15, "\x80"), NO},
      {"DOS EPS whose sum wraps to 0", DetectEps, Patch(DOS_EPS, 12, "\xFF\xFF\xFF\xFF\x01"), NO},
      {"DOS EPS whose sum wraps to 1", DetectEps, Patch(Patch(DOS_EPS, 12, "\x02"), 20, "\xFF\xFF\xFF\xFF"), YES},
      {"DOS EPS whose sum wraps to 1, by the lengths", DetectEps, Patch(Patch(DOS_EPS, 16, "\x02"), 24, "\xFF\xFF\xFF\xFF"), YES},
      {"DOS EPS of Illustrator 8", DetectEps, DOS_EPS_OF_AI8, YES},
      {"DOS EPS of Illustrator 8 for its filter", DetectEps, DOS_EPS_OF_AI8, NO, L"sample", ILLUSTRATOR},
      {"DOS EPS of Illustrator 9 for its filter", DetectEps, DOS_EPS_WITH_TIFF + "\n%%Creator: Adobe Illustrator 9.0\n" + AI, YES, L"sample",
       ILLUSTRATOR},

      {"EPS of Illustrator 8", DetectEps, EpsBy("%%Creator: 8.0"), NO},
      {"EPS of Illustrator 9", DetectEps, EpsBy("%%Creator: 9.0"), YES},
      {"EPS of another version 8", DetectEps, "%!PS EPSF\n%%Creator: 8.0\n%%BoundingBox:", YES},
  };
}

std::vector<Sample> JobSamples() {
  return {
      {"PostScript", DetectPostScript, "%!PS", YES},
      {"PostScript, two marks and line ends", DetectPostScript, "%!\r\n", YES},
      {"PostScript cut to 3 bytes", DetectPostScript, "%!P", NO},
      {"PostScript behind Ctrl-D", DetectPostScript, "\x04%!P", YES},
      {"PostScript behind Ctrl-D cut to 3 bytes", DetectPostScript, "\x04%!", NO},
      {"PostScript behind Ctrl-E", DetectPostScript, "\x05%!P", NO},
      {"PostScript in PJL", DetectPostScript, "\x1B%-12345", YES},
      {"PostScript in PJL behind any byte", DetectPostScript, "z%-12345", YES},
      {"PostScript in PJL at 0", DetectPostScript, "%-12345XX", NO},
      {"PostScript by Illustrator", DetectPostScript, "%!PS\n" + AI, NO},
      {"PostScript by Illustrator behind Ctrl-D", DetectPostScript, "\x04%!PS\n" + AI, NO},
      {"PostScript in DOS EPS", DetectPostScript, "\xC5\xD0\xD3\xC6", YES},
      {"PostScript in DOS EPS, another byte", DetectPostScript, "\xC5\xD0\xD3\xC7", NO},
      {"PostScript in DOS EPS of Illustrator", DetectPostScript, DOS_EPS_OF_AI8, YES, L"sample", ILLUSTRATOR},
  };
}

std::vector<Sample> IllustratorSamples() {
  const std::string box = "%%BoundingBox:\n";
  return {
      {"AI", DetectIllustrator, "%%BoundingBox:\nA&L", YES},
      {"AI by name", DetectIllustrator, "Adobe Illustrator\r%%BoundingBox:", YES},
      {"AI by underscored name", DetectIllustrator, box + "x Adobe_Illustrator 7", YES},
      {"AI by name in a middle line", DetectIllustrator, box + "Adobe Illustrator\nx\n", YES},
      {"AI by underscored name in a middle line", DetectIllustrator, box + "Adobe_Illustrator\nx\n", YES},
      {"AI without a bounding box", DetectIllustrator, "%%BoundingBox\nA&L", NO},

      {"AI mark before the box on its line", DetectIllustrator, "A&L%%BoundingBox:", YES},
      {"AI mark behind the box on its line", DetectIllustrator, "%%BoundingBox:A&L", NO},
      {"AI mark behind leading colons", DetectIllustrator, "::A&L%%BoundingBox:", YES},
      {"AI mark behind a colon", DetectIllustrator, ":x:A&L%%BoundingBox:", NO},
      {"AI mark behind a second box", DetectIllustrator, box + "%%BoundingBox:A&L", NO},

      {"AI box behind the setup", DetectIllustrator, "A&L\n%%EndSetup\n%%BoundingBox:", NO},
      {"AI mark behind the setup", DetectIllustrator, box + "%%EndSetup\nA&L", NO},
      {"AI mark on the line that ends the setup", DetectIllustrator, box + "%%EndSetup A&L", YES},
      {"AI box on the line that ends the setup", DetectIllustrator, "A&L\n%%EndSetup%%BoundingBox:", YES},
      {"AI setup ended behind a box", DetectIllustrator, "%%BoundingBox:%%EndSetup\nA&L", YES},
      {"AI setup ended before a box", DetectIllustrator, "%%EndSetup%%BoundingBox:\nA&L", NO},

      {"AI mark behind a zero byte", DetectIllustrator, box + Bytes("x\0A&L"), NO},
      {"AI mark in the line behind a zero byte", DetectIllustrator, box + Bytes("x\0y\nA&L"), YES},
      {"AI with a line of 159 bytes up to the box", DetectIllustrator, Fill(145, 'x') + "%%BoundingBox:xA&L", YES},
      {"AI with a line of 160 bytes up to the box", DetectIllustrator, Fill(146, 'x') + "%%BoundingBox:A&L", NO},
      {"AI mark that ends a full line", DetectIllustrator, box + Fill(476, 'x') + "A&L", YES},
      {"AI mark without its last byte", DetectIllustrator, box + Fill(477, 'x') + "A&L", NO},
      {"AI mark without its first byte", DetectIllustrator, box + Fill(479, 'x') + "A&L", NO},
      {"AI mark behind the dropped byte", DetectIllustrator, box + Fill(480, 'x') + "A&L", YES},
      {"AI mark behind a full line and LF", DetectIllustrator, box + Fill(159, 'x') + "\nA&L", YES},
      {"AI mark behind a full line and CR LF", DetectIllustrator, box + Fill(159, 'x') + "\r\nA&L", YES},
      {"AI mark far behind", DetectIllustrator, box + Fill(20000, '\n') + Fill(20000, '\0') + "\n" + "A&L", YES},
      {"AI mark hidden before one that is seen", DetectIllustrator, Bytes("\0A&L\n\0") + AI + AI, YES},

      {"AI 8 with EPSF", DetectIllustrator, EpsBy("%%Creator: 8.0"), YES},
      {"AI 9 with EPSF", DetectIllustrator, EpsBy("%%Creator: 9.0"), NO},
      {"AI 9 with EPSF in the second line", DetectIllustrator, "%\nEPSF\n%%Creator: 9.0\n" + AI, YES},
      {"AI in PDF", DetectIllustrator, "%PDF-1\n" + AI, NO},
      {"AI in DOS EPS", DetectIllustrator, DOS_EPS_OF_AI8, NO},
      {"AI in DOS EPS for its filter", DetectIllustrator, DOS_EPS_OF_AI8, YES, L"sample", ILLUSTRATOR},
      {"AI in DOS EPS behind an empty line", DetectIllustrator, "\n\xC5\xD0\xD3\xC6\n" + AI, NO},
      {"AI behind a DOS EPS magic at 1", DetectIllustrator, "x\xC5\xD0\xD3\xC6\n" + AI, YES},
      {"AI, empty", DetectIllustrator, "", NO},
      {"AI, line ends only", DetectIllustrator, "\r\n\r\n", NO},
  };
}

// What a PJL job start in the first line does to the Illustrator test.
std::vector<Sample> PjlSamples() {
  const std::string pjl = "\x1B%-12345X@PJL JOB\n";
  const std::string enter = "@PJL ENTER LANGUAGE=POSTSCRIPT\n";
  const std::string sameLine = "A&L%%BoundingBox:%-12345X@PJL";
  return {
      {"AI in PJL", DetectIllustrator, pjl + enter + "%!PS-Adobe-3.0\n" + AI, NO},
      {"AI in PJL as EPS", DetectIllustrator, pjl + enter + "% EPSF\n" + AI, NO},
      {"AI in PJL of another kind", DetectIllustrator, pjl + enter + "%!PS-Zdobe EPSG\n" + AI, YES},
      {"AI in PJL with a line between", DetectIllustrator, pjl + "@PJL\n" + enter + "EPSF\n" + AI, YES},
      {"AI with PJL in the second line", DetectIllustrator, "%\n" + pjl + enter + "EPSF\n" + AI, YES},
      {"AI mark in the PJL line", DetectIllustrator, "%-12345X@PJL A&L\nx\n%%BoundingBox:", NO},
      {"AI mark behind the PJL line", DetectIllustrator, pjl + "A&L\n%%BoundingBox:", YES},
      {"AI mark in the ENTER line", DetectIllustrator, pjl + "@PJL ENTER LANGUAGE=POSTSCRIPT A&L\nx\n%%BoundingBox:", NO},
      {"AI mark behind the ENTER line", DetectIllustrator, pjl + enter + "A&L\n%%BoundingBox:", YES},
      {"AI in a lone PJL line", DetectIllustrator, sameLine, YES},
      {"AI in a lone PJL and ENTER line", DetectIllustrator, sameLine + "@PJL ENTER LANGUAGE=POSTSCRIPT", YES},
      {"AI in a lone PJL, ENTER and PostScript line", DetectIllustrator, sameLine + "@PJL ENTER LANGUAGE=POSTSCRIPT%!PS-Adobe", NO},
      {"AI in a lone PJL and PostScript line", DetectIllustrator, sameLine + "%!PS-Adobe", YES},
  };
}

// The creator's version, as an Illustrator document that calls itself EPSF shows it.
std::vector<Sample> VersionSamples() {
  struct Case {
    std::string creator;
    Verdict verdict;
  };
  const Case cases[] = {
      {"%%Creator: 8.0", YES},
      {"%%Creator: 8.00", YES},
      {"%%Creator: 8.01", NO},
      {"%%Creator: 9.0", NO},
      {"%%Creator: 10.0", NO},
      {"%%Creator: 0.0", NO},
      {"%%Creator: 0.01", YES},
      {"%%Creator: 8", NO},
      {"%%Creator: 8.", YES},
      {"%%Creator: 9.", NO},
      {"%%Creator: .5", YES},
      {".5 %%Creator:", YES},
      {"8.5 %%Creator:", NO},
      {Fill(159, 'x') + "98.0 %%Creator:", YES},
      {"%%Creator: .", NO},
      {"%%Creator: a.b 8.0", NO},
      {"%%Creator: 7.5.9", YES},
      {"%%Creator: 8.0e5", YES},
      {"%%Creator: -8.0", YES},
      {"%%Creator: 9/8.0", YES},
      {"%%Creator: 9:8.0", YES},
      {"%%Creator: 7.9:", YES},
      {"%%Creator: " + Fill(140, '0') + "7.5", YES},
      {"%%Creator: 1" + Fill(140, '0') + ".5", NO},
      {"%%Creator: ." + Fill(140, '0') + "5", YES},
      {Bytes("%%Creator: \08.0"), NO},
      {"%%creator: 8.0", NO},
      {"%%Creator 8.0", NO},
      {"%%Creator: 9.0\n%%AI8_CreatorVersion: 8.0", YES},
      {"%%Creator: 8.0\n%%AI8_CreatorVersion: 13.0.0", NO},
      {"%%Creator: 8.0\r\n\r\n%%AI8_CreatorVersion: 9.0", NO},
      {"%%Creator: 8.0\n%%AI8_CreatorVersion: 8", NO},
      {"%%Creator: 8.0\n%%AI9_CreatorVersion: 9.0", YES},
      {"%%Creator: 8.0\n%\n%%AI8_CreatorVersion: 9.0", YES},
      {"%%Creator: 9.0\n%%Creator: 8.0", NO},
      {"%%EndSetup\n%%Creator: 8.0", NO},
      {"%%EndSetup %%Creator: 8.0", YES},
      {"%%EndSetu\n%%Creator: 8.0", YES},
      {Bytes("\0%%Creator: 9.0\n%%Creator: 8.0"), YES},
      {Fill(159, 'x') + "%%Creator: 9.0\n%%Creator: 8.0", YES},
      {Fill(149, 'x') + "%%Creator: 8.0", NO},
  };
  std::vector<Sample> samples;
  for (const Case& creator : cases) {
    samples.push_back({"AI by " + creator.creator, DetectIllustrator, EpsBy(creator.creator), creator.verdict});
  }
  return samples;
}

std::vector<Sample> PdfSamples() {
  return {
      {"AI PDF without its module", DetectIllustratorPdf, "%PDF-1", YES},
      {"AI PDF without a version", DetectIllustratorPdf, Bytes("%PDF-\0"), YES},
      {"AI PDF cut to 5 bytes", DetectIllustratorPdf, "%PDF-", NO},
  };
}

std::vector<Sample> HpglSamples() {
  return {
      {"HPGL IN", DetectHpgl, "IN;", YES},
      {"HPGL in", DetectHpgl, "in;", YES},
      {"HPGL IN cut to 2 bytes", DetectHpgl, "IN", NO},
      {"HPGL INSP1", DetectHpgl, "INSP1", YES},
      {"HPGL SP1", DetectHpgl, "SP1;", YES},
      {"HPGL SP1 cut", DetectHpgl, "SP1", NO},
      {"HPGL SP2 without IN", DetectHpgl, "SP2;xx;", NO},
      {"HPGL SP of two digits", DetectHpgl, "SP12;IN;", NO},
      {"HPGL IN and SP1", DetectHpgl, "IN SP1,", YES},
      {"HPGL IN and SP8", DetectHpgl, "IN,SP 8", YES},
      {"HPGL IN and SP9", DetectHpgl, "IN,SP9;xx;", NO},
      {"HPGL IN and SP0", DetectHpgl, "IN,SP0;xx;", NO},
      {"HPGL IN and SP with two spaces", DetectHpgl, "IN,SP  1;xx", NO},
      {"HPGL IN, PU and SP3", DetectHpgl, "IN PU SP3", YES},
      {"HPGL SP and a space without IN", DetectHpgl, "SP 1;IN;", YES},
      {"HPGL SP and a space without IN, then nothing", DetectHpgl, "SP 1;xx;", NO},

      {"HPGL behind all separators", DetectHpgl, "\x03\n\r\x1A ,;IN;", YES},
      {"HPGL behind XON", DetectHpgl, "\x11xIN;", YES},
      {"HPGL behind XON alone", DetectHpgl, "\x11IN;;", NO},
      {"HPGL behind XOFF", DetectHpgl, "\x13xIN;", NO},
      {"HPGL DF", DetectHpgl, "DFIN;", YES},
      {"HPGL DF with a parameter", DetectHpgl, "DF1IN;", NO},
      {"HPGL no letter behind a B", DetectHpgl, "B[10;IN;", NO},
      {"HPGL DT", DetectHpgl, "DT<IN;", YES},
      {"HPGL DT without a byte", DetectHpgl, "DT;IN;", YES},
      {"HPGL DT of two bytes", DetectHpgl, "DT**IN;", NO},
      {"HPGL LB", DetectHpgl, "LBxx;\x03IN;", YES},
      {"HPGL LB, empty", DetectHpgl, "LB\x03IN;", YES},
      {"HPGL LB without its end", DetectHpgl, "LBxx;IN;", NO},
      {"HPGL PE", DetectHpgl, "PExx<1;IN;", YES},
      {"HPGL PE, empty", DetectHpgl, "PE;IN;", YES},
      {"HPGL PE without its end", DetectHpgl, "PExx<1 IN SP1", NO},
      {"HPGL PA up to a semicolon", DetectHpgl, "PA10,20;,IN;", YES},
      {"HPGL PA up to a letter", DetectHpgl, "PA10,20IN;", YES},
      {"HPGL PA up to an escape", DetectHpgl, "PA10\x1B.AIN;", YES},
      {"HPGL PA up to the second semicolon", DetectHpgl, "PA;1;IN;", YES},
      {"HPGL PA and a parameter behind a semicolon", DetectHpgl, "PA1;1;IN;", NO},
      {"HPGL PA up to the end", DetectHpgl, "PA10,20", NO},

      {"HPGL text behind Ctrl-D", DetectHpgl, "\x04%!", YES},
      {"HPGL text behind Ctrl-E", DetectHpgl, "\x05%!", NO},
      {"HPGL text in PJL", DetectHpgl, "\x1B%-12345X@PJL", YES},
      {"HPGL text in PJL behind any byte", DetectHpgl, "x%-12345", YES},
      {"HPGL, PJL and nothing", DetectHpgl, "\x1B%-12345X   ", NO},
      {"HPGL, PJL and a point without an end", DetectHpgl, "\x1B%-12345XPA1", NO},
      {"HPGL text", DetectHpgl, "Hello, world;", NO},

      {"HPGL IN at 1,021 of 1,024", DetectHpgl, Fill(1021, ' ') + "IN;", YES},
      {"HPGL IN at 1,021 of more", DetectHpgl, Fill(1021, ' ') + "IN; SP1;", YES},
      {"HPGL IN at 1,022", DetectHpgl, Fill(1022, ' ') + "IN; SP1;", NO},
      {"HPGL INSP1 over the limit", DetectHpgl, Fill(1021, ' ') + "INSP1", YES},
      {"HPGL LB that ends at 1,020", DetectHpgl, "LB" + Fill(1018, 'x') + "\x03IN;", YES},
      {"HPGL LB that ends at 1,021", DetectHpgl, "LB" + Fill(1019, 'x') + "\x03IN;", NO},
      {"HPGL LB that ends at 1,024", DetectHpgl, "IN,LB" + Fill(1019, 'x') + "\x03SP1;", NO},
  };
}

// Escape sequences by their second and third byte; what follows tells where they were held to end.
std::vector<Sample> EscapeSamples() {
  std::vector<Sample> samples = {
      {"HPGL escape of 3, 4th a semicolon", DetectHpgl, "\x1B.A;IN;", YES},
      {"HPGL escape of 4, 5th a semicolon", DetectHpgl, "\x1B.Ax;IN;", YES},
      {"HPGL escape )", DetectHpgl, "\x1B.)xIN;x\x1B.AIN;", YES},
      {"HPGL escape ) and an escape at once", DetectHpgl, "\x1B.)\x1B.AIN;", YES},
      {"HPGL escape ) without an escape", DetectHpgl, "\x1B.)IN;", NO},
      {"HPGL escape @ behind a separator", DetectHpgl, ";\x1B.@1:IN;", YES},
      {"HPGL escape of 9", DetectHpgl, "\x1B%-1234.XIN;", YES},
      {"HPGL escape of 5", DetectHpgl, "\x1B%-12IN;", YES},
      {"HPGL escape of 5, 9th not X", DetectHpgl, "\x1B%-1234.xIN;", NO},
      {"HPGL escape %0B", DetectHpgl, "\x1B%0BIN;", YES},
      {"HPGL escape $0B", DetectHpgl, "\x1B$0BIN;", NO},
      {"HPGL escape & and a minus", DetectHpgl, "\x1B&-1234.XIN;", NO},
      {"HPGL escape &l0o", DetectHpgl, "\x1B&l0oIN;", YES},
      {"HPGL escape &l0", DetectHpgl, "\x1B&l0IN;", NO},
      {"HPGL escape *c1T", DetectHpgl, "\x1B*c1TIN;", YES},
      {"HPGL escape *c1Y", DetectHpgl, "\x1B*c1YIN;", YES},
      {"HPGL escape *c1t", DetectHpgl, "\x1B*c1tIN;", NO},
      {"HPGL escape of 2", DetectHpgl, "\x1B.;IN;", YES},
      {"HPGL escape E and an escape", DetectHpgl,
       "\x1B"
       "E\x1B.AIN;",
       YES},
      {"HPGL escape P and a mnemonic", DetectHpgl, "\x1B.PU;IN;", YES},
      {"HPGL escape S and a pen", DetectHpgl, "\x1B.SP1;", YES},
  };
  const auto add = [&samples](const std::string& bytes, Verdict verdict) {
    samples.push_back({"HPGL escape " + bytes.substr(1), DetectHpgl, bytes, verdict});
  };
  for (const char third : std::string("(ABEJKLORUYZ")) add(std::string("\x1B.") + third + "IN;", YES);
  for (const char third : std::string("@HIMNT")) {
    add(std::string("\x1B.") + third + ":IN;", YES);
    add(std::string("\x1B.") + third + "1;IN;2:IN;", YES);
    add(std::string("\x1B.") + third + "1;IN;", NO);
  }
  for (const char third : std::string("PQS")) {
    add(std::string("\x1B.") + third + ";IN;", YES);
    add(std::string("\x1B.") + third + "305;IN;", YES);
    add(std::string("\x1B.") + third + "305,IN;", NO);
    add(std::string("\x1B.") + third + "3:5;IN;", NO);
  }
  for (const char third : std::string("CDFGVWX")) add(std::string("\x1B.") + third + "IN;", NO);
  return samples;
}

}  // namespace

std::vector<Sample> PostscriptSamples() {
  std::vector<Sample> all;
  for (auto table : {EpsSamples, JobSamples, IllustratorSamples, PjlSamples, VersionSamples, PdfSamples, HpglSamples, EscapeSamples}) {
    const std::vector<Sample> samples = table();
    all.insert(all.end(), samples.begin(), samples.end());
  }
  return all;
}

}  // namespace typescout::tests
