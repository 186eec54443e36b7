// Video, animation, sound, web pages and 3D scenes.
#include "tests/samples/sample.h"

namespace typescout::tests {

void MediaSamples(Table& table) {
  const std::string flic = Patch(Fill(128), 4, "\x12\xAF");
  const std::string midi = "MThd" + Fill(10) + "MTrk";
  const std::string sun = ".snd" + Fill(8) + Fill(3);  // the encoding's last byte is missing
  const std::string swappedSun = "dns." + Fill(8);     // the encoding is missing
  const std::string oldSun = ".sd\0"s + Fill(11);
  const std::string swappedOldSun = "\0ds."s + Fill(8);
  table.Add("AVI", 0x0600, {"RIFF....AVI "}, {"RIFF....AVI", "RIFX....AVI "});
  table.Add("FLIC", 0x0607, {flic, Patch(flic, 4, "\x11")},
            {Patch(flic, 4, "\x10"), Patch(flic, 4, "\x13"), Patch(flic, 4, "\xAF\x12"), flic.substr(0, 127)});
  table.Add("MPEG", 0x060F, {PadTo(12, "\0\0\x01\xBA"s), PadTo(12, "\0\0\x01\xB3"s), PadTo(12, "\xFF\xFB"), PadTo(12, "\xFF\xF0")},
            {PadTo(11, "\0\0\x01\xBA"s), PadTo(12, "\xFF\xEF"), PadTo(12, "\xFE\xFB")});
  table.Add("animated cursor", 0x0614, {"RIFF....ACON"}, {"RIFF....ACO", "FORM....ACON"});
  table.Add("3DMF or VRML", 0x0617, {"3DMF", "3dmf", "#VRML", "#vrml", "3DMetafile", "3dmetafile"}, {"#VRM"});
  table.Add("HGB1", 0x060B, {"HGB1"}, {"HGB3"});
  table.Add("HTML", 0x0615, {"<TITLE>", "<title>", Fill(1'017, '<') + "<TITLE>" + Fill(976, 'x'), Fill(1'017, ' ') + "<title>" + Fill(976, 'x')},
            {"<Title>", "<title >", "<title", Fill(1'018, '<') + "<TITLE>" + Fill(975, 'x'), Fill(1'018, ' ') + "<title>" + Fill(975, 'x')});
  table.Add("WAVE", 0x0601, {"RIFF....WAVE"}, {"RIFF....WAV", "RIFX....WAVE"});
  table.Add("Creative Voice", 0x0602, {"Creative Voice File"}, {"Creative Voice Fil"});
  table.Add("MacBinary sound", 0x0608, {Fill(65) + "sfil" + Fill(1), Fill(69) + "jBox"},
            {Fill(65) + "sfil", Fill(65) + "sfim" + Fill(1), Fill(69) + "jBo"});
  table.Add("AIFF", 0x0609, {"FORM....AIFF", "FORM....AIFC"}, {"FORM....AIF", "RIFF....AIFF"});
  table.Add("8SVX", 0x060A, {"FORM....8SVX"}, {"FORM....8SV", "LIST....8SVX"});
  table.Add("MIDI", 0x0611, {midi, PadTo(18, "RIFF....RMID")},
            {midi.substr(0, 17), "MThd" + Fill(14) + "MTrk", Patch(midi, 0, "MThe"), PadTo(17, "RIFF....RMID"), PadTo(18, "FORM....RMID"),
             PadTo(18, "RIFF....RMIE")});
  table.Add("Sun audio", 0x0613,
            {sun + "\x01", sun + "\x02", sun + "\x03", oldSun + "\x01", swappedSun + "\x01", swappedSun + "\x03\0\0\0"s, swappedOldSun + "\x01"},
            {sun + Fill(1), sun + "\x04", Patch(sun, 14, "\x01\x01"), Patch(oldSun, 3, ".") + "\x01", swappedSun + Fill(4),
             swappedSun + "\x04\0\0\0"s, swappedSun + "\0\0\0\x03"s, Patch(swappedOldSun, 1, "e") + "\x01"});
}

}  // namespace typescout::tests
