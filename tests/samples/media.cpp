// Video, animation, sound, web pages and 3D scenes.
#include "detectors/media/media.h"

#include "tests/samples/sample.h"

namespace typescout::tests {

std::vector<Sample> MediaSamples() {
  const std::string flic = Patch(Fill(128), 4, "\x12\xAF");
  const std::string midi = "MThd" + Fill(10) + "MTrk";
  const std::string sun = ".snd" + Fill(8) + Fill(3);  // the encoding's last byte is missing
  const std::string swappedSun = "dns." + Fill(8);     // the encoding is missing
  const std::string oldSun = Bytes(".sd\0") + Fill(11);
  const std::string swappedOldSun = Bytes("\0ds.") + Fill(8);
  return {
      {"AVI", DetectAvi, "RIFF....AVI ", YES},
      {"AVI cut", DetectAvi, "RIFF....AVI", NO},
      {"AVI form, no RIFF", DetectAvi, "RIFX....AVI ", NO},

      {"FLIC FLC", DetectFlic, flic, YES},
      {"FLIC FLI", DetectFlic, Patch(flic, 4, "\x11"), YES},
      {"FLIC 0xAF10", DetectFlic, Patch(flic, 4, "\x10"), NO},
      {"FLIC 0xAF13", DetectFlic, Patch(flic, 4, "\x13"), NO},
      {"FLIC in the other byte order", DetectFlic, Patch(flic, 4, "\xAF\x12"), NO},
      {"FLIC of 127 bytes", DetectFlic, flic.substr(0, 127), NO},

      {"MPEG pack", DetectMpeg, PadTo(12, Bytes("\0\0\x01\xBA")), YES},
      {"MPEG pack of 11 bytes", DetectMpeg, PadTo(11, Bytes("\0\0\x01\xBA")), NO},
      {"MPEG sequence", DetectMpeg, PadTo(12, Bytes("\0\0\x01\xB3")), YES},
      {"MPEG audio FF FB", DetectMpeg, PadTo(12, "\xFF\xFB"), YES},
      {"MPEG audio FF F0", DetectMpeg, PadTo(12, "\xFF\xF0"), YES},
      {"MPEG audio FF EF", DetectMpeg, PadTo(12, "\xFF\xEF"), NO},
      {"MPEG audio FE FB", DetectMpeg, PadTo(12, "\xFE\xFB"), NO},

      {"Animated cursor", DetectAnimatedCursor, "RIFF....ACON", YES},
      {"Animated cursor cut", DetectAnimatedCursor, "RIFF....ACO", NO},
      {"Animated cursor, no RIFF", DetectAnimatedCursor, "FORM....ACON", NO},

      {"3DMF binary", Detect3dmfOrVrml, "3DMF", YES},
      {"3DMF binary in lower case", Detect3dmfOrVrml, "3dmf", YES},
      {"VRML", Detect3dmfOrVrml, "#VRML", YES},
      {"VRML in lower case", Detect3dmfOrVrml, "#vrml", YES},
      {"VRML cut", Detect3dmfOrVrml, "#VRM", NO},
      {"3DMF text", Detect3dmfOrVrml, "3DMetafile", YES},
      {"3DMF text in lower case", Detect3dmfOrVrml, "3dmetafile", YES},

      {"HGB1", DetectHgb1, "HGB1", YES},
      {"HGB1 as HGB3", DetectHgb1, "HGB3", NO},

      {"HTML title in upper case", DetectHtml, "<TITLE>", YES},
      {"HTML title in lower case", DetectHtml, "<title>", YES},
      {"HTML title in mixed case", DetectHtml, "<Title>", NO},
      {"HTML title with a space", DetectHtml, "<title >", NO},
      {"HTML title cut", DetectHtml, "<title", NO},
      {"HTML title at 1017", DetectHtml, Fill(1'017, '<') + "<TITLE>" + Fill(976, 'x'), YES},
      {"HTML title at 1018", DetectHtml, Fill(1'018, '<') + "<TITLE>" + Fill(975, 'x'), NO},
      {"HTML small title at 1017", DetectHtml, Fill(1'017, ' ') + "<title>" + Fill(976, 'x'), YES},
      {"HTML small title at 1018", DetectHtml, Fill(1'018, ' ') + "<title>" + Fill(975, 'x'), NO},

      {"WAVE", DetectWave, "RIFF....WAVE", YES},
      {"WAVE cut", DetectWave, "RIFF....WAV", NO},
      {"WAVE, no RIFF", DetectWave, "RIFX....WAVE", NO},

      {"Creative Voice", DetectCreativeVoice, "Creative Voice File", YES},
      {"Creative Voice cut", DetectCreativeVoice, "Creative Voice Fil", NO},

      {"MacBinary sfil", DetectMacBinarySound, Fill(65) + "sfil" + Fill(1), YES},
      {"MacBinary sfil, 69 bytes", DetectMacBinarySound, Fill(65) + "sfil", NO},
      {"MacBinary sfim", DetectMacBinarySound, Fill(65) + "sfim" + Fill(1), NO},
      {"MacBinary jBox", DetectMacBinarySound, Fill(69) + "jBox", YES},
      {"MacBinary jBox, cut", DetectMacBinarySound, Fill(69) + "jBo", NO},

      {"AIFF", DetectAiff, "FORM....AIFF", YES},
      {"AIFF-C", DetectAiff, "FORM....AIFC", YES},
      {"AIFF cut", DetectAiff, "FORM....AIF", NO},
      {"AIFF, no FORM", DetectAiff, "RIFF....AIFF", NO},

      {"8SVX", Detect8Svx, "FORM....8SVX", YES},
      {"8SVX cut", Detect8Svx, "FORM....8SV", NO},
      {"8SVX, no FORM", Detect8Svx, "LIST....8SVX", NO},

      {"MIDI", DetectMidi, midi, YES},
      {"MIDI cut", DetectMidi, midi.substr(0, 17), NO},
      {"MIDI with a track 4 bytes on", DetectMidi, "MThd" + Fill(14) + "MTrk", NO},
      {"MIDI without a header", DetectMidi, Patch(midi, 0, "MThe"), NO},
      {"MIDI in RIFF", DetectMidi, PadTo(18, "RIFF....RMID"), YES},
      {"MIDI in RIFF of 17 bytes", DetectMidi, PadTo(17, "RIFF....RMID"), NO},
      {"MIDI in another container", DetectMidi, PadTo(18, "FORM....RMID"), NO},
      {"MIDI in RIFF, other form", DetectMidi, PadTo(18, "RIFF....RMIE"), NO},

      {"Sun audio 1", DetectSunAudio, sun + "\x01", YES},
      {"Sun audio 2", DetectSunAudio, sun + "\x02", YES},
      {"Sun audio 3", DetectSunAudio, sun + "\x03", YES},
      {"Sun audio 0", DetectSunAudio, sun + Fill(1), NO},
      {"Sun audio 4", DetectSunAudio, sun + "\x04", NO},
      {"Sun audio 0x101", DetectSunAudio, Patch(sun, 14, "\x01\x01"), NO},
      {"Sun audio, old magic", DetectSunAudio, oldSun + "\x01", YES},
      {"Sun audio, magic cut", DetectSunAudio, Patch(oldSun, 3, ".") + "\x01", NO},
      {"Swapped Sun audio 1, cut behind the encoding's first byte", DetectSunAudio, swappedSun + "\x01", YES},
      {"Swapped Sun audio 3", DetectSunAudio, swappedSun + Bytes("\x03\0\0\0"), YES},
      {"Swapped Sun audio 0", DetectSunAudio, swappedSun + Fill(4), NO},
      {"Swapped Sun audio 4", DetectSunAudio, swappedSun + Bytes("\x04\0\0\0"), NO},
      {"Swapped Sun audio in the other byte order", DetectSunAudio, swappedSun + Bytes("\0\0\0\x03"), NO},
      {"Swapped Sun audio, old magic", DetectSunAudio, swappedOldSun + "\x01", YES},
      {"Swapped Sun audio, no magic", DetectSunAudio, Patch(swappedOldSun, 1, "e") + "\x01", NO},
  };
}

}  // namespace typescout::tests
