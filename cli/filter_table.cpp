#include "cli/filter_table.h"

#include <algorithm>
#include <cstdio>

namespace typescout::cli {

// clang-format off
constexpr std::array<Filter, FILTER_COUNT> FILTERS = {{
    /*   0 */ {0x0700, "native-0700",             "Native file 0x0700",                       "",                                              "",                                                "never"},
    /*   1 */ {0x0707, "native-0707",             "Native file 0x0707",                       "",                                              "",                                                "never"},
    /*   2 */ {0x0710, "paint-image",             "Paint program image",                      "",                                              "",                                                ""},
    /*   3 */ {0x0301, "bmp",                     "Windows bitmap",                           "image/bmp",                                     "bmp dib rle",                                     ""},
    /*   4 */ {0x0305, "gif",                     "GIF picture",                              "image/gif",                                     "gif",                                             ""},
    /*   5 */ {0x0306, "jpeg",                    "JPEG picture",                             "image/jpeg",                                    "jpg jpeg jpe jfif jif",                           ""},
    /*   6 */ {0x0318, "os2-bmp",                 "OS/2 bitmap",                              "image/bmp",                                     "bmp",                                             ""},
    /*   7 */ {0x0509, "eps",                     "Encapsulated PostScript",                  "application/postscript",                        "eps epsf epsi",                                   ""},
    /*   8 */ {0x0334, "jpeg2000",                "JPEG 2000 picture",                        "image/jp2",                                     "jp2 j2k jpc j2c jpx jpf jpm",                     ""},
    /*   9 */ {0x0703, "drawing",                 "Native drawing",                           "",                                              "vxr vxt vxrt",                                    ""},
    /*  10 */ {0x070A, "tar-form",                "RIFF form TAR",                            "",                                              "",                                                ""},
    /*  11 */ {0x070D, "technical-drawing",       "Technical drawing",                        "",                                              "zrs",                                             ""},
    /*  12 */ {0x0712, "symbol-library",          "Symbol library",                           "",                                              "tsl",                                             ""},
    /*  13 */ {0x050A, "postscript",              "PostScript job",                           "application/postscript",                        "ps prn",                                          ""},
    /*  14 */ {0x0704, "vxrcomp1",                "Compressed drawing (VXRCOMP1)",            "",                                              "",                                                ""},
    /*  15 */ {0x0705, "vxrcomp2",                "Compressed drawing (VXRCOMP2)",            "",                                              "",                                                ""},
    /*  16 */ {0x0713, "budi",                    "BUDI file",                                "",                                              "",                                                ""},
    /*  17 */ {0x0701, "budi-0701",               "BUDI file (0x0701)",                       "",                                              "",                                                "16"},
    /*  18 */ {0x0702, "budi-0702",               "BUDI file (0x0702)",                       "",                                              "",                                                "16"},
    /*  19 */ {0x0535, "illustrator-pdf",         "PDF with Illustrator data",                "application/pdf",                               "ai pdf",                                          ""},
    /*  20 */ {0x0503, "illustrator",             "Illustrator document",                     "application/postscript",                        "ai",                                              ""},
    /*  21 */ {0x0507, "word-processor-graphics", "Word-processor graphics",                  "",                                              "",                                                ""},
    /*  22 */ {0x050E, "wmf",                     "Windows metafile",                         "image/wmf",                                     "wmf",                                             ""},
    /*  23 */ {0x0540, "filter-0540",             "File with a complemented header",          "",                                              "",                                                ""},
    /*  24 */ {0x0807, "word-processor-2",        "Word-processor document, major version 2", "",                                              "",                                                ""},
    /*  25 */ {0x0808, "word-processor-0.1",      "Word-processor document, version 0.1",     "",                                              "",                                                ""},
    /*  26 */ {0x0809, "word-processor-0.0",      "Word-processor document, version 0.0",     "",                                              "",                                                ""},
    /*  27 */ {0x0303, "tga",                     "Truevision TGA",                           "",                                              "tga targa vda icb vst",                           ""},
    /*  28 */ {0x0302, "pcx",                     "PCX picture",                              "",                                              "pcx pcc",                                         ""},
    /*  29 */ {0x0308, "scitex-ct",               "Scitex CT picture",                        "",                                              "sct ct",                                          ""},
    /*  30 */ {0x0304, "tiff",                    "TIFF picture",                             "image/tiff",                                    "tif tiff",                                        "5"},
    /*  31 */ {0x0311, "cursor",                  "Windows cursor or executable",             "",                                              "cur exe dll",                                     ""},
    /*  32 */ {0x0310, "icon",                    "Windows icon",                             "image/vnd.microsoft.icon",                      "ico",                                             "27 31"},
    /*  33 */ {0x0312, "executable",              "Windows executable",                       "application/vnd.microsoft.portable-executable", "exe dll ocx scr",                                 "31"},
    /*  34 */ {0x0314, "photoshop",               "Photoshop document",                       "image/vnd.adobe.photoshop",                     "psd psb",                                         ""},
    /*  35 */ {0x0337, "camera-raw",              "Camera raw picture",                       "",                                              "dng nef cr2 cr3 crw arw orf rw2 raf pef srw raw", ""},
    /*  36 */ {0x0317, "macpaint",                "MacPaint picture",                         "",                                              "mac pntg pnt",                                    ""},
    /*  37 */ {0x0320, "srcdocid",                "File opening with srcdocid",               "",                                              "",                                                ""},
    /*  38 */ {0x0324, "paint-eps",               "Paint program EPS",                        "application/postscript",                        "eps",                                             "7 13 20"},
    /*  39 */ {0x0321, "raster-0321",             "Raster file 0x0321",                       "",                                              "",                                                "never"},
    /*  40 */ {0x0322, "png",                     "PNG picture",                              "image/png",                                     "png",                                             ""},
    /*  41 */ {0x0339, "webp",                    "WebP picture",                             "image/webp",                                    "webp",                                            ""},
    /*  42 */ {0x0325, "raster-0325",             "Raster file 0x0325",                       "",                                              "",                                                "never"},
    /*  43 */ {0x0327, "filter-0327",             "File with version 1.8 at 40 (0x0327)",     "",                                              "",                                                ""},
    /*  44 */ {0x0329, "xpm",                     "X PixMap",                                 "",                                              "xpm",                                             ""},
    /*  45 */ {0x0330, "xcf",                     "GIMP picture",                             "",                                              "xcf",                                             ""},
    /*  46 */ {0x0331, "pnm",                     "Netpbm picture",                           "",                                              "pnm pbm pgm ppm",                                 ""},
    /*  47 */ {0x0339, "webp",                    "WebP picture",                             "image/webp",                                    "webp",                                            "41"},
    /*  48 */ {0x0600, "avi",                     "AVI video",                                "",                                              "avi",                                             ""},
    /*  49 */ {0x0607, "flic",                    "FLIC animation",                           "",                                              "fli flc",                                         ""},
    /*  50 */ {0x060F, "mpeg",                    "MPEG video or audio",                      "video/mpeg",                                    "mpg mpeg mpe m1v m2v vob mp3 mp2 mpa",            ""},
    /*  51 */ {0x0610, "media-0610",              "Media file 0x0610",                        "",                                              "",                                                "never"},
    /*  52 */ {0x0614, "animated-cursor",         "Windows animated cursor",                  "",                                              "ani",                                             ""},
    /*  53 */ {0x0616, "animated-gif",            "Animated GIF",                             "image/gif",                                     "gif",                                             ""},
    /*  54 */ {0x0504, "filter-0504",             "Vector file 0x0504",                       "",                                              "",                                                ""},
    /*  55 */ {0x0500, "cgm",                     "Computer Graphics Metafile",               "image/cgm",                                     "cgm",                                             ""},
    /*  56 */ {0x090B, "cgm-090b",                "Computer Graphics Metafile (0x090B)",      "image/cgm",                                     "cgm",                                             "55"},
    /*  57 */ {0x0502, "filter-0502",             "Vector file 0x0502",                       "",                                              "",                                                ""},
    /*  58 */ {0x0510, "dxf",                     "DXF drawing",                              "image/vnd.dxf",                                 "dxf",                                             ""},
    /*  59 */ {0x0515, "postscript-0515",         "PostScript job (0x0515)",                  "application/postscript",                        "ps prn",                                          "13"},
    /*  60 */ {0x0501, "hpgl",                    "HP-GL plotter file",                       "application/vnd.hp-HPGL",                       "plt hpgl hpg hgl",                                ""},
    /*  61 */ {0x050B, "filter-050b",             "Vector file 0x050B",                       "",                                              "",                                                ""},
    /*  62 */ {0x050D, "pict",                    "Macintosh PICT",                           "",                                              "pct pict pic",                                    ""},
    /*  63 */ {0x0514, "emf",                     "Enhanced metafile",                        "image/emf",                                     "emf",                                             ""},
    /*  64 */ {0x050F, "native-metafile",         "Native metafile",                          "",                                              "",                                                ""},
    /*  65 */ {0x0505, "filter-0505",             "Record stream (0x0505)",                   "",                                              "",                                                ""},
    /*  66 */ {0x060E, "media-060e",              "Media file 0x060E",                        "",                                              "",                                                "never"},
    /*  67 */ {0x0545, "publisher",               "Publisher document",                       "",                                              "pub",                                             ""},
    /*  68 */ {0x0513, "hgb3",                    "File opening with HGB3",                   "",                                              "",                                                ""},
    /*  69 */ {0x0516, "vector-0516",             "Vector file 0x0516",                       "",                                              "",                                                "never"},
    /*  70 */ {0x0512, "vector-0512",             "Vector file 0x0512",                       "",                                              "",                                                "never"},
    /*  71 */ {0x0536, "filter-0536",             "Vector file 0x0536",                       "",                                              "",                                                ""},
    /*  72 */ {0x0517, "vector-0517",             "Vector file 0x0517",                       "",                                              "",                                                "never"},
    /*  73 */ {0x0523, "visio",                   "Visio drawing",                            "application/vnd.visio",                         "vsd vst vss vsw",                                 ""},
    /*  74 */ {0x0541, "svg",                     "SVG drawing",                              "image/svg+xml",                                 "svg",                                             ""},
    /*  75 */ {0x0530, "dwg",                     "DWG drawing",                              "image/vnd.dwg",                                 "dwg dwt",                                         ""},
    /*  76 */ {0x0531, "makervector",             "MakerVector drawing",                      "",                                              "",                                                ""},
    /*  77 */ {0x053B, "vector-053b",             "Vector file 0x053B",                       "",                                              "",                                                "never"},
    /*  78 */ {0x0617, "3dmf-vrml",               "3DMF or VRML scene",                       "model/vrml",                                    "wrl vrml 3dmf 3dm b3d",                           ""},
    /*  79 */ {0x0814, "word-8",                  "Word document, version 8",                 "application/msword",                            "doc dot",                                         ""},
    /*  80 */ {0x0801, "word-6",                  "Word document, version 6 or 7",            "application/msword",                            "doc dot",                                         ""},
    /*  81 */ {0x0802, "filter-0802",             "Document 0x0802",                          "",                                              "",                                                ""},
    /*  82 */ {0x0803, "filter-0803",             "Document 0x0803",                          "",                                              "",                                                ""},
    /*  83 */ {0x0804, "filter-0804",             "Document 0x0804",                          "",                                              "",                                                ""},
    /*  84 */ {0x0805, "rtf",                     "Rich Text Format",                         "application/rtf",                               "rtf",                                             ""},
    /*  85 */ {0x080B, "filter-080b",             "Text opening with # VV # 5.0",             "",                                              "",                                                ""},
    /*  86 */ {0x080C, "filter-080c",             "Document with a framed header (0x080C)",   "",                                              "",                                                ""},
    /*  87 */ {0x080D, "ws2000",                  "Document naming WS2000",                   "",                                              "",                                                ""},
    /*  88 */ {0x080E, "guillemet-commands",      "Text with commands in guillemets",         "",                                              "",                                                ""},
    /*  89 */ {0x080F, "ver-header",              "Text opening with [ver]",                  "",                                              "",                                                ""},
    /*  90 */ {0x0812, "filter-0812",             "Document 0x0812",                          "",                                              "",                                                ""},
    /*  91 */ {0x0813, "filter-0813",             "Document 0x0813",                          "",                                              "",                                                "27"},
    /*  92 */ {0x0903, "short-line-text",         "Plain text, short lines",                  "text/plain",                                    "txt asc text",                                    ""},
    /*  93 */ {0x0901, "plain-text",              "Plain text",                               "text/plain",                                    "txt asc text",                                    ""},
    /*  94 */ {0x0902, "ascii-text",              "Plain text, seven-bit",                    "text/plain",                                    "txt asc text",                                    "92"},
    /*  95 */ {0x0904, "short-line-text-0904",    "Plain text, short lines (0x0904)",         "text/plain",                                    "txt asc text",                                    "92"},
    /*  96 */ {0x0900, "short-line-text-0900",    "Plain text, short lines (0x0900)",         "text/plain",                                    "txt asc text",                                    "92"},
    /*  97 */ {0x060B, "hgb1",                    "File opening with HGB1",                   "",                                              "",                                                ""},
    /*  98 */ {0x0615, "html",                    "HTML page",                                "text/html",                                     "html htm",                                        ""},
    /*  99 */ {0x0601, "wave",                    "WAVE sound",                               "",                                              "wav wave",                                        ""},
    /* 100 */ {0x0602, "voc",                     "Creative Voice sound",                     "",                                              "voc",                                             ""},
    /* 101 */ {0x0608, "mac-sound",               "Macintosh sound",                          "",                                              "snd",                                             ""},
    /* 102 */ {0x0609, "aiff",                    "AIFF sound",                               "",                                              "aif aiff aifc",                                   ""},
    /* 103 */ {0x060A, "8svx",                    "8SVX sound",                               "",                                              "8svx svx iff",                                    ""},
    /* 104 */ {0x0611, "midi",                    "MIDI music",                               "",                                              "mid midi rmi smf kar",                            ""},
    /* 105 */ {0x0613, "au",                      "Sun audio",                                "audio/basic",                                   "au snd",                                          ""},
    /* 106 */ {0x0313, "gem-image",               "GEM picture",                              "",                                              "img gem",                                         ""},
    /* 107 */ {0x0544, "ops",                     "Text opening with <!OPS,",                 "",                                              "",                                                ""},
}};
// clang-format on

namespace {

constexpr Filter DRAWING_OBJECT = {
    0x0706, "drawing-object", "Drawing object in a compound document", "", "", ""};

bool HasWord(std::string_view words, std::string_view word) {
  while (!words.empty()) {
    const std::size_t end = std::min(words.find(' '), words.size());
    if (words.substr(0, end) == word) return true;
    words.remove_prefix(std::min(end + 1, words.size()));
  }
  return false;
}

template <typename Test>
const Filter* FindIf(Test test) {
  const auto* found = std::find_if(FILTERS.begin(), FILTERS.end(), test);
  if (found != FILTERS.end()) return found;
  return test(DRAWING_OBJECT) ? &DRAWING_OBJECT : nullptr;
}

}  // namespace

const Filter* FindFilter(int id) {
  return FindIf([id](const Filter& filter) { return filter.id == id; });
}

const Filter* FindFilter(std::string_view label) {
  return FindIf([label](const Filter& filter) { return filter.label == label; });
}

int RowOf(const Filter& filter) {
  return &filter == &DRAWING_OBJECT ? -1 : static_cast<int>(&filter - FILTERS.data());
}

bool IsNeverReported(const Filter& filter) { return filter.hiddenBy == "never"; }

std::string_view Family(int id) {
  switch (id >> 8) {
    case 0x03:
      return "raster";
    case 0x05:
      return "vector";
    case 0x06:
      return "media";
    case 0x07:
      return "native";
    case 0x08:
      return "document";
    case 0x09:
      return "text";
    default:
      return "";
  }
}

std::string FormatId(int id) {
  std::array<char, 16> text;
  const int length = std::snprintf(text.data(), text.size(), "0x%04X", static_cast<unsigned>(id));
  return {text.data(), static_cast<std::size_t>(length)};
}

bool HasExtension(const Filter& filter, std::string_view extension) {
  return HasWord(filter.extensions, extension);
}

std::string_view UsualExtension(const Filter& filter) {
  return filter.extensions.substr(0, filter.extensions.find(' '));
}

}  // namespace typescout::cli
