#include "detectors/postscript/postscript.h"

#include "tests/samples/sample.h"

namespace typescout::tests {
namespace {

std::vector<Sample> HpglSamples() {
  return {
      {"HPGL IN", DetectHpgl, "IN;", YES},
      {"HPGL in", DetectHpgl, "in;", YES},
      {"HPGL IN cut to 2 bytes", DetectHpgl, "IN", NO},
      {"HPGL IN and a colon", DetectHpgl, "IN:", NO},
      {"HPGL IN and an unknown word", DetectHpgl, "INxx;", NO},
      {"HPGL INSP1", DetectHpgl, "INSP1", YES},
      {"HPGL SP1", DetectHpgl, "SP1;", YES},
      {"HPGL SP1 cut", DetectHpgl, "SP1", NO},
      {"HPGL SP1 and a colon", DetectHpgl, "SP1:xx", NO},
      {"HPGL SP2 without IN", DetectHpgl, "SP2;xx;", NO},
      {"HPGL SP2 and then IN", DetectHpgl, "SP2;IN;", YES},
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
      {"HPGL behind a tab", DetectHpgl, "\tIN;", NO},
      {"HPGL behind a zero byte", DetectHpgl, Bytes("\0IN;"), NO},
      {"HPGL behind XON", DetectHpgl, "\x11xIN;", YES},
      {"HPGL behind XON alone", DetectHpgl, "\x11IN;;", NO},
      {"HPGL behind XOFF", DetectHpgl, "\x13xIN;", NO},
      {"HPGL, XON and nothing", DetectHpgl, "\x11x", NO},
      {"HPGL DF", DetectHpgl, "DFIN;", YES},
      {"HPGL DF with a parameter", DetectHpgl, "DF1IN;", NO},
      {"HPGL DT", DetectHpgl, "DT*IN;", YES},
      {"HPGL DT without a byte", DetectHpgl, "DT;IN;", YES},
      {"HPGL DT of two bytes", DetectHpgl, "DT**IN;", NO},
      {"HPGL LB", DetectHpgl, "LBxx;\x03IN;", YES},
      {"HPGL LB, empty", DetectHpgl, "LB\x03IN;", YES},
      {"HPGL LB without its end", DetectHpgl, "LBxx;IN;", NO},
      {"HPGL LB and nothing", DetectHpgl, " LB", NO},
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
      {"HPGL text behind Ctrl-D, cut", DetectHpgl, "\x04%", NO},
      {"HPGL text behind Ctrl-E", DetectHpgl, "\x05%!", NO},
      {"HPGL text in PJL", DetectHpgl, "\x1B%-12345X@PJL", YES},
      {"HPGL text in PJL behind any byte", DetectHpgl, "x%-12345", YES},
      {"HPGL text in PJL with another number", DetectHpgl, "x%-12346", NO},
      {"HPGL, PJL and nothing", DetectHpgl, "\x1B%-12345X", NO},
      {"HPGL, PJL and a point without an end", DetectHpgl, "\x1B%-12345XPA1", NO},
      {"HPGL text", DetectHpgl, "Hello, world;", NO},

      {"HPGL IN at 1,021 of 1,024", DetectHpgl, Fill(1021, ' ') + "IN;", YES},
      {"HPGL IN at 1,021 of more", DetectHpgl, Fill(1021, ' ') + "IN; SP1;", YES},
      {"HPGL IN at 1,022", DetectHpgl, Fill(1022, ' ') + "IN; SP1;", NO},
      {"HPGL INSP1 over the limit", DetectHpgl, Fill(1021, ' ') + "INSP1", YES},
      {"HPGL SP1 over the limit", DetectHpgl, Fill(1021, ' ') + "SP1;", YES},
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
      {"HPGL escape of 3, 5th a comma", DetectHpgl, "\x1B.Ax,IN;", NO},
      {"HPGL escape )", DetectHpgl, "\x1B.)xIN;x\x1B.AIN;", YES},
      {"HPGL escape ) and an escape at once", DetectHpgl, "\x1B.)\x1B.AIN;", YES},
      {"HPGL escape ) without an escape", DetectHpgl, "\x1B.)IN;", NO},
      {"HPGL escape of 9", DetectHpgl, "\x1B%-1234.XIN;", YES},
      {"HPGL escape of 5", DetectHpgl, "\x1B%-12IN;", YES},
      {"HPGL escape of 5, 9th not X", DetectHpgl, "\x1B%-1234.xIN;", NO},
      {"HPGL escape %0B", DetectHpgl, "\x1B%0BIN;", YES},
      {"HPGL escape %A", DetectHpgl, "\x1B%AIN;", YES},
      {"HPGL escape $0B", DetectHpgl, "\x1B$0BIN;", NO},
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
      {"HPGL escape up to the end", DetectHpgl, "   \x1B.A", NO},
      {"HPGL escape P and a mnemonic", DetectHpgl, "\x1B.PU;IN;", YES},
      {"HPGL escape S and a pen", DetectHpgl, "\x1B.SP1;", YES},
  };
  const auto add = [&samples](const std::string& bytes, Verdict verdict) {
    samples.push_back({"HPGL escape " + bytes.substr(1), DetectHpgl, bytes, verdict});
  };
  for (const char third : std::string("(ABEJKLORUYZ"))
    add(std::string("\x1B.") + third + "IN;", YES);
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
  for (auto table : {HpglSamples, EscapeSamples}) {
    const std::vector<Sample> samples = table();
    all.insert(all.end(), samples.begin(), samples.end());
  }
  return all;
}

}  // namespace typescout::tests
