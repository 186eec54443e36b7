#include "catalogue/filters.h"

#include <algorithm>
#include <cstdio>
#include <tuple>

namespace typescout::catalogue {
namespace {

using enum Evidence;

// clang-format off
constexpr auto TABLE = std::to_array<Filter>({
    /*   0 */ {0x0700, "native-0700",             "Native file 0x0700",                       "",                                              "",                                                NEVER,     {}},
    /*   1 */ {0x0707, "native-0707",             "Native file 0x0707",                       "",                                              "",                                                NEVER,     {}},
    /*   2 */ {0x0710, "paint-image",             "Paint program image",                      "",                                              "",                                                SIGNATURE, {}},
    /*   3 */ {0x0301, "bmp",                     "Windows bitmap",                           "image/bmp",                                     "bmp dib rle",                                     SIGNATURE, {}},
    /*   4 */ {0x0305, "gif",                     "GIF picture",                              "image/gif",                                     "gif",                                             SIGNATURE, {}},
    /*   5 */ {0x0306, "jpeg",                    "JPEG or TIFF picture",                     "image/jpeg",                                    "jpg jpeg jpe jfif jif",                           SEVERAL,   {}},
    /*   6 */ {0x0318, "os2-bmp",                 "OS/2 bitmap",                              "image/bmp",                                     "bmp",                                             SIGNATURE, {}},
    /*   7 */ {0x0509, "eps",                     "Encapsulated PostScript",                  "application/postscript",                        "eps epsf epsi",                                   SIGNATURE, {}},
    /*   8 */ {0x0334, "jpeg2000",                "JPEG 2000 picture",                        "image/jp2",                                     "jp2 j2k jpc j2c jpx jpf jpm",                     SIGNATURE, {}},
    /*   9 */ {0x0703, "drawing",                 "Native drawing",                           "",                                              "vxr vxt vxrt",                                    SIGNATURE, {}},
    /*  10 */ {0x070A, "tar-form",                "RIFF form TAR",                            "",                                              "",                                                SIGNATURE, {}},
    /*  11 */ {0x070D, "technical-drawing",       "Technical drawing",                        "",                                              "zrs",                                             SIGNATURE, {}},
    /*  12 */ {0x0712, "symbol-library",          "Symbol library",                           "",                                              "tsl",                                             SIGNATURE, {}},
    /*  13 */ {0x050A, "postscript",              "PostScript job",                           "application/postscript",                        "ps prn",                                          SIGNATURE, {}},
    /*  14 */ {0x0704, "vxrcomp1",                "Compressed drawing (VXRCOMP1)",            "",                                              "",                                                SIGNATURE, {}},
    /*  15 */ {0x0705, "vxrcomp2",                "Compressed drawing (VXRCOMP2)",            "",                                              "",                                                SIGNATURE, {}},
    /*  16 */ {0x0713, "budi",                    "BUDI file",                                "",                                              "",                                                SIGNATURE, {}},
    /*  17 */ {0x0701, "budi-0701",               "BUDI file (0x0701)",                       "",                                              "",                                                SIGNATURE, {0x0713}},
    /*  18 */ {0x0702, "budi-0702",               "BUDI file (0x0702)",                       "",                                              "",                                                SIGNATURE, {0x0713}},
    /*  19 */ {0x0535, "illustrator-pdf",         "PDF, with or without Illustrator data",    "application/pdf",                               "ai pdf",                                          SIGNATURE, {}},
    /*  20 */ {0x0503, "illustrator",             "Illustrator document",                     "application/postscript",                        "ai",                                              SIGNATURE, {}},
    /*  21 */ {0x0507, "word-processor-graphics", "Word-processor graphics",                  "",                                              "",                                                SIGNATURE, {}},
    /*  22 */ {0x050E, "wmf",                     "Windows metafile",                         "image/wmf",                                     "wmf",                                             SIGNATURE, {}},
    /*  23 */ {0x0540, "filter-0540",             "File with a complemented header",          "",                                              "",                                                SIGNATURE, {}},
    /*  24 */ {0x0807, "word-processor-2",        "Word-processor document, major version 2", "",                                              "",                                                SIGNATURE, {}},
    /*  25 */ {0x0808, "word-processor-0.1",      "Word-processor document, version 0.1",     "",                                              "",                                                SIGNATURE, {}},
    /*  26 */ {0x0809, "word-processor-0.0",      "Word-processor document, version 0.0",     "",                                              "",                                                SIGNATURE, {}},
    /*  27 */ {0x0303, "tga",                     "Truevision TGA",                           "image/x-tga",                                   "tga targa vda icb vst",                           NO_MAGIC,  {}},
    /*  28 */ {0x0302, "pcx",                     "PCX picture",                              "image/vnd.zbrush.pcx",                          "pcx pcc",                                         SIGNATURE, {}},
    /*  29 */ {0x0308, "scitex-ct",               "Scitex CT picture",                        "image/x-scitex-ct",                             "sct ct",                                          SIGNATURE, {}},
    /*  30 */ {0x0304, "tiff",                    "TIFF picture",                             "image/tiff",                                    "tif tiff",                                        SEVERAL,   {0x0306}},
    /*  31 */ {0x0311, "cursor",                  "Windows cursor or executable",             "image/x-win-bitmap",                            "cur",                                             SEVERAL,   {}},
    /*  32 */ {0x0310, "icon",                    "Windows icon or executable",               "image/vnd.microsoft.icon",                      "ico",                                             SEVERAL,   {0x0303, 0x0311}},
    /*  33 */ {0x0312, "executable",              "Windows executable",                       "application/vnd.microsoft.portable-executable", "exe dll sys ocx scr cpl drv ax efi",              SIGNATURE, {0x0311}},
    /*  34 */ {0x0314, "photoshop",               "Photoshop document",                       "image/vnd.adobe.photoshop",                     "psd psb",                                         SIGNATURE, {}},
    /*  35 */ {0x0337, "camera-raw",              "Camera raw picture",                       "image/x-dcraw",                                 "dng nef cr2 cr3 crw arw orf rw2 raf pef srw raw", SIGNATURE, {}},
    /*  36 */ {0x0317, "macpaint",                "MacPaint picture",                         "image/x-macpaint",                              "mac pntg pnt",                                    NO_MAGIC,  {}},
    /*  37 */ {0x0320, "srcdocid",                "File opening with srcdocid",               "",                                              "",                                                SIGNATURE, {}},
    /*  38 */ {0x0324, "paint-eps",               "Paint program EPS",                        "application/postscript",                        "eps",                                             SIGNATURE, {0x0509, 0x050A, 0x0503}},
    /*  39 */ {0x0321, "raster-0321",             "Raster file 0x0321",                       "",                                              "",                                                NEVER,     {}},
    /*  40 */ {0x0322, "png",                     "PNG picture",                              "image/png",                                     "png",                                             SIGNATURE, {}},
    /*  41 */ {0x0339, "webp",                    "WebP picture",                             "image/webp",                                    "webp",                                            SIGNATURE, {}},
    /*  42 */ {0x0325, "raster-0325",             "Raster file 0x0325",                       "",                                              "",                                                NEVER,     {}},
    /*  43 */ {0x0327, "filter-0327",             "File with version 1.8 at 40 (0x0327)",     "",                                              "",                                                SIGNATURE, {}},
    /*  44 */ {0x0329, "xpm",                     "X PixMap",                                 "image/x-xpixmap",                               "xpm",                                             SIGNATURE, {}},
    /*  45 */ {0x0330, "xcf",                     "GIMP picture",                             "image/x-xcf",                                   "xcf",                                             SIGNATURE, {}},
    /*  46 */ {0x0331, "pnm",                     "Netpbm picture",                           "image/x-portable-anymap",                       "pnm pbm pgm ppm",                                 SIGNATURE, {}},
    /*  47 */ {0x0339, "webp",                    "WebP picture",                             "image/webp",                                    "webp",                                            SIGNATURE, {0x0339}},
    /*  48 */ {0x0600, "avi",                     "AVI video",                                "video/x-msvideo",                               "avi",                                             SIGNATURE, {}},
    /*  49 */ {0x0607, "flic",                    "FLIC animation",                           "video/x-flic",                                  "fli flc",                                         SIGNATURE, {}},
    /*  50 */ {0x060F, "mpeg",                    "MPEG video or audio",                      "video/mpeg",                                    "mpg mpeg mpe m1v m2v vob mp3 mp2 mpa",            SIGNATURE, {}},
    /*  51 */ {0x0610, "media-0610",              "Media file 0x0610",                        "",                                              "",                                                NEVER,     {}},
    /*  52 */ {0x0614, "animated-cursor",         "Windows animated cursor",                  "application/x-navi-animation",                  "ani",                                             SIGNATURE, {}},
    /*  53 */ {0x0616, "animated-gif",            "Animated GIF",                             "image/gif",                                     "gif",                                             SIGNATURE, {}},
    /*  54 */ {0x0504, "filter-0504",             "Vector file 0x0504",                       "",                                              "",                                                NO_MAGIC,  {}},
    /*  55 */ {0x0500, "cgm",                     "Computer Graphics Metafile",               "image/cgm",                                     "cgm",                                             SIGNATURE, {}},
    /*  56 */ {0x090B, "cgm-090b",                "Computer Graphics Metafile (0x090B)",      "image/cgm",                                     "cgm",                                             SIGNATURE, {0x0500}},
    /*  57 */ {0x0502, "filter-0502",             "Vector file 0x0502",                       "",                                              "",                                                SIGNATURE, {}},
    /*  58 */ {0x0510, "dxf",                     "DXF drawing",                              "image/vnd.dxf",                                 "dxf",                                             SIGNATURE, {}},
    /*  59 */ {0x0515, "postscript-0515",         "PostScript job (0x0515)",                  "application/postscript",                        "ps prn",                                          SIGNATURE, {0x050A}},
    /*  60 */ {0x0501, "hpgl",                    "HP-GL plotter file",                       "application/vnd.hp-HPGL",                       "plt hpgl hpg hgl",                                SIGNATURE, {}},
    /*  61 */ {0x050B, "filter-050b",             "Vector file 0x050B",                       "",                                              "",                                                SIGNATURE, {}},
    /*  62 */ {0x050D, "pict",                    "Macintosh PICT",                           "image/x-pict",                                  "pct pict pic",                                    SIGNATURE, {}},
    /*  63 */ {0x0514, "emf",                     "Enhanced metafile",                        "image/emf",                                     "emf",                                             SIGNATURE, {}},
    /*  64 */ {0x050F, "native-metafile",         "Native metafile",                          "",                                              "",                                                SIGNATURE, {}},
    /*  65 */ {0x0505, "filter-0505",             "Record stream (0x0505)",                   "",                                              "",                                                NO_MAGIC,  {}},
    /*  66 */ {0x060E, "media-060e",              "Media file 0x060E",                        "",                                              "",                                                NEVER,     {}},
    /*  67 */ {0x0545, "publisher",               "Publisher document",                       "application/vnd.ms-publisher",                  "pub",                                             SIGNATURE, {}},
    /*  68 */ {0x0513, "hgb3",                    "File opening with HGB3",                   "",                                              "",                                                SIGNATURE, {}},
    /*  69 */ {0x0516, "vector-0516",             "Vector file 0x0516",                       "",                                              "",                                                NEVER,     {}},
    /*  70 */ {0x0512, "vector-0512",             "Vector file 0x0512",                       "",                                              "",                                                NEVER,     {}},
    /*  71 */ {0x0536, "filter-0536",             "Vector file 0x0536",                       "",                                              "",                                                SIGNATURE, {}},
    /*  72 */ {0x0517, "vector-0517",             "Vector file 0x0517",                       "",                                              "",                                                NEVER,     {}},
    /*  73 */ {0x0523, "visio",                   "Visio drawing",                            "application/vnd.visio",                         "vsd vst vss vsw",                                 SIGNATURE, {}},
    /*  74 */ {0x0541, "svg",                     "SVG drawing",                              "image/svg+xml",                                 "svg",                                             SIGNATURE, {}},
    /*  75 */ {0x0530, "dwg",                     "DWG drawing",                              "image/vnd.dwg",                                 "dwg dwt",                                         SIGNATURE, {}},
    /*  76 */ {0x0531, "makervector",             "MakerVector drawing",                      "",                                              "",                                                SIGNATURE, {}},
    /*  77 */ {0x053B, "vector-053b",             "Vector file 0x053B",                       "",                                              "",                                                NEVER,     {}},
    /*  78 */ {0x0617, "3dmf-vrml",               "3DMF or VRML scene",                       "model/vrml",                                    "wrl vrml 3dmf 3dm b3d",                           SIGNATURE, {}},
    /*  79 */ {0x0814, "word-8",                  "Word document, version 8",                 "application/msword",                            "doc dot",                                         SIGNATURE, {}},
    /*  80 */ {0x0801, "word-6",                  "Word document, version 6 or 7",            "application/msword",                            "doc dot",                                         SIGNATURE, {}},
    /*  81 */ {0x0802, "filter-0802",             "Document 0x0802",                          "",                                              "",                                                SIGNATURE, {}},
    /*  82 */ {0x0803, "filter-0803",             "Document 0x0803",                          "",                                              "",                                                SIGNATURE, {}},
    /*  83 */ {0x0804, "filter-0804",             "Document 0x0804",                          "",                                              "",                                                SIGNATURE, {}},
    /*  84 */ {0x0805, "rtf",                     "Rich Text Format",                         "application/rtf",                               "rtf",                                             SIGNATURE, {}},
    /*  85 */ {0x080B, "filter-080b",             "Text opening with # VV # 5.0",             "",                                              "",                                                SIGNATURE, {}},
    /*  86 */ {0x080C, "filter-080c",             "Document with a framed header (0x080C)",   "",                                              "",                                                SIGNATURE, {}},
    /*  87 */ {0x080D, "ws2000",                  "Document naming WS2000",                   "",                                              "",                                                SIGNATURE, {}},
    /*  88 */ {0x080E, "guillemet-commands",      "Text with commands in guillemets",         "",                                              "",                                                SIGNATURE, {}},
    /*  89 */ {0x080F, "ver-header",              "Text opening with [ver]",                  "",                                              "",                                                SIGNATURE, {}},
    /*  90 */ {0x0812, "filter-0812",             "Document 0x0812",                          "",                                              "",                                                SIGNATURE, {}},
    /*  91 */ {0x0813, "filter-0813",             "Document 0x0813",                          "",                                              "",                                                SIGNATURE, {0x0303}},
    /*  92 */ {0x0903, "short-line-text",         "Plain text, short lines",                  "text/plain",                                    "txt asc text",                                    TEXT,      {}},
    /*  93 */ {0x0901, "plain-text",              "Plain text",                               "text/plain",                                    "txt asc text",                                    TEXT,      {}},
    /*  94 */ {0x0902, "ascii-text",              "Plain text, seven-bit",                    "text/plain",                                    "txt asc text",                                    TEXT,      {0x0903}},
    /*  95 */ {0x0904, "short-line-text-0904",    "Plain text, short lines (0x0904)",         "text/plain",                                    "txt asc text",                                    TEXT,      {0x0903}},
    /*  96 */ {0x0900, "short-line-text-0900",    "Plain text, short lines (0x0900)",         "text/plain",                                    "txt asc text",                                    TEXT,      {0x0903}},
    /*  97 */ {0x060B, "hgb1",                    "File opening with HGB1",                   "",                                              "",                                                SIGNATURE, {}},
    /*  98 */ {0x0615, "html",                    "HTML page",                                "text/html",                                     "html htm",                                        SIGNATURE, {}},
    /*  99 */ {0x0601, "wave",                    "WAVE sound",                               "audio/x-wav",                                   "wav wave",                                        SIGNATURE, {}},
    /* 100 */ {0x0602, "voc",                     "Creative Voice sound",                     "audio/x-voc",                                   "voc",                                             SIGNATURE, {}},
    /* 101 */ {0x0608, "mac-sound",               "Macintosh sound",                          "application/x-macbinary",                       "snd",                                             SIGNATURE, {}},
    /* 102 */ {0x0609, "aiff",                    "AIFF sound",                               "audio/x-aiff",                                  "aif aiff aifc",                                   SIGNATURE, {}},
    /* 103 */ {0x060A, "8svx",                    "8SVX sound",                               "audio/x-8svx",                                  "8svx svx iff",                                    SIGNATURE, {}},
    /* 104 */ {0x0611, "midi",                    "MIDI music",                               "audio/midi",                                    "mid midi rmi smf kar",                            SIGNATURE, {}},
    /* 105 */ {0x0613, "au",                      "Sun audio",                                "audio/basic",                                   "au snd",                                          SIGNATURE, {}},
    /* 106 */ {0x0313, "gem-image",               "GEM picture",                              "image/x-gem",                                   "img gem",                                         SIGNATURE, {}},
    /* 107 */ {0x0544, "ops",                     "Text opening with <!OPS,",                 "",                                              "",                                                SIGNATURE, {}},
});
// clang-format on

int IdOf(int row) { return TABLE[static_cast<std::size_t>(row)].id; }

// Reported by the library for a compound document of its class; no row of the registry.
constexpr Filter DRAWING_OBJECT = {
    0x0706, "drawing-object", "Drawing object in a compound document", "", "", SIGNATURE, {}};

constexpr int TGA = 0x0303;
constexpr int CURSOR = 0x0311;

// For the rows that accept several formats: the rows that tell them apart. No other formats
// share their rows, so most pictures need no further row.
struct MorePrecise {
  int id;
  std::array<int, 3> ids;  // padded with 0
};
constexpr auto MORE_PRECISE = std::to_array<MorePrecise>({
    {0x0306, {0x0710, 0x0337, 0x0304}},  // a TIFF: the paint program's, a camera's, any other
    {0x0311, {0x0812, 0x0813, 0x0312}},  // 00 00 02 00: a work sheet; MZ: an executable
    {0x0310, {0x0312}},                  // MZ: an executable
    {0x0304, {0x0710, 0x0337}},          // a TIFF of the paint program's or a camera's
});

// Every extension with the rows that have it, sorted.
struct NamedRow {
  std::string_view extension;
  int row;
};

constexpr std::size_t CountExtensions() {
  std::size_t count = 0;
  for (const Filter& filter : TABLE) {
    if (filter.extensions.empty()) continue;
    count += 1 + static_cast<std::size_t>(
                     std::count(filter.extensions.begin(), filter.extensions.end(), ' '));
  }
  return count;
}

constexpr auto NAMED_ROWS = [] {
  std::array<NamedRow, CountExtensions()> named;
  std::size_t count = 0;
  for (std::size_t row = 0; row < TABLE.size(); ++row) {
    for (std::string_view words = TABLE[row].extensions; !words.empty();) {
      const std::size_t end = std::min(words.find(' '), words.size());
      named[count++] = {words.substr(0, end), static_cast<int>(row)};
      words.remove_prefix(std::min(end + 1, words.size()));
    }
  }
  std::sort(named.begin(), named.end(), [](const NamedRow& a, const NamedRow& b) {
    return std::tie(a.extension, a.row) < std::tie(b.extension, b.row);
  });
  return named;
}();

std::span<const NamedRow> RowsWith(std::string_view extension) {
  struct Order {
    bool operator()(const NamedRow& row, std::string_view text) const {
      return row.extension < text;
    }
    bool operator()(std::string_view text, const NamedRow& row) const {
      return text < row.extension;
    }
  };
  const auto [first, last] =
      std::equal_range(NAMED_ROWS.begin(), NAMED_ROWS.end(), extension, Order());
  return {first, last};
}

template <typename Test>
const Filter* FindIf(Test test) {
  const auto* found = std::find_if(TABLE.begin(), TABLE.end(), test);
  if (found != TABLE.end()) return found;
  return test(DRAWING_OBJECT) ? &DRAWING_OBJECT : nullptr;
}

bool Contains(std::span<const int> ids, int id) {
  return std::find(ids.begin(), ids.end(), id) != ids.end();
}

bool IsMorePrecise(const Filter& filter, const Filter& answer) {
  const auto* pair = std::find_if(MORE_PRECISE.begin(), MORE_PRECISE.end(),
                                  [&answer](const MorePrecise& p) { return p.id == answer.id; });
  if (pair != MORE_PRECISE.end()) return Contains(pair->ids, filter.id);
  return answer.evidence < SEVERAL && filter.evidence > answer.evidence;
}

}  // namespace

std::span<const Filter> Filters() { return TABLE; }

const Filter* FindFilter(int id) {
  return FindIf([id](const Filter& filter) { return filter.id == id; });
}

const Filter* FindFilter(std::string_view label) {
  return FindIf([label](const Filter& filter) { return filter.label == label; });
}

int RowOf(const Filter& filter) {
  return &filter == &DRAWING_OBJECT ? -1 : static_cast<int>(&filter - TABLE.data());
}

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

std::string ExtensionOf(std::string_view path) {
  const std::string_view name = path.substr(path.find_last_of("/\\") + 1);
  const std::size_t dot = name.rfind('.');
  if (dot == std::string_view::npos || dot == 0) return {};
  std::string extension(name.substr(dot + 1));
  for (char& c : extension) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return extension;
}

bool HasExtension(const Filter& filter, std::string_view extension) {
  const auto rows = RowsWith(extension);
  return std::any_of(rows.begin(), rows.end(),
                     [&filter](const NamedRow& named) { return IdOf(named.row) == filter.id; });
}

std::string_view UsualExtension(const Filter& filter) {
  return filter.extensions.substr(0, filter.extensions.find(' '));
}

bool MayNameText(std::string_view extension) {
  const auto rows = RowsWith(extension);
  return std::all_of(rows.begin(), rows.end(), [](const NamedRow& named) {
    return TABLE[static_cast<std::size_t>(named.row)].evidence == TEXT;
  });
}

std::vector<int> RowsThatDescribeBetter(const Filter& answer, std::string_view extension,
                                        std::span<const int> asked) {
  const int answerRow = RowOf(answer);
  if (answerRow < 0) return {};
  const bool isAnswerNamed = HasExtension(answer, extension);
  const auto isNamed = [named = RowsWith(extension)](int row) {
    return std::any_of(named.begin(), named.end(),
                       [row](const NamedRow& other) { return other.row == row; });
  };

  std::vector<int> rows;
  const auto consider = [&](int row) {
    const Filter& filter = TABLE[static_cast<std::size_t>(row)];
    if (filter.evidence == NEVER || filter.id == answer.id) return;
    // A true-colour TGA without an identification field begins as a cursor does: the name decides.
    if (answer.id == TGA && filter.id == CURSOR && isAnswerNamed) return;
    if (IsMorePrecise(filter, answer) ||
        (filter.evidence >= answer.evidence && !isAnswerNamed && isNamed(row))) {
      rows.push_back(row);
    }
  };
  if (asked.empty()) {
    for (int row = answerRow + 1; row < static_cast<int>(TABLE.size()); ++row) consider(row);
  } else {
    const auto isAnswer = [&answer](int row) { return IdOf(row) == answer.id; };
    std::for_each(std::find_if(asked.begin(), asked.end(), isAnswer), asked.end(), consider);
  }
  const auto order = [&isNamed](int row) {
    const Evidence evidence = TABLE[static_cast<std::size_t>(row)].evidence;
    return std::tuple(-static_cast<int>(evidence), !isNamed(row), row);
  };
  std::sort(rows.begin(), rows.end(), [&order](int a, int b) { return order(a) < order(b); });
  return rows;
}

std::string_view ExpectedExtension(const Filter& best, std::string_view extension) {
  if (extension.empty() || HasExtension(best, extension)) return {};
  const auto rows = RowsWith(extension);
  const bool isTextual = std::all_of(rows.begin(), rows.end(), [](const NamedRow& named) {
    return TABLE[static_cast<std::size_t>(named.row)].mime.starts_with("text/");
  });
  return best.evidence == TEXT && isTextual ? std::string_view() : UsualExtension(best);
}

}  // namespace typescout::catalogue
