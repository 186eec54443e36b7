// DCRaw: the module that identifies the raw pictures of digital cameras, by LibRaw.
#include <libraw/libraw.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "host/posix/regular_file.h"
#include "modules/camera_raw/beginnings.h"
#include "modules/camera_raw/raw_stream.h"
#include "typescout/typescout.h"

namespace camera_raw {
namespace {

// Whether the decoder that LibRaw chose unpacks samples as any TIFF file holds them.
bool IsDecoderOfPlainSamples(LibRaw& raw) {
  libraw_decoder_info_t decoder = {};
  if (raw.get_decoder_info(&decoder) != LIBRAW_SUCCESS || decoder.decoder_name == nullptr) {
    return true;
  }
  const std::string_view name = decoder.decoder_name;
  return name.starts_with("eight_bit_") || name.starts_with("packed_load") ||
         name.starts_with("unpacked_");
}

// What tells a raw picture from other TIFF files, which scanners and photo editors sign with a
// camera's name, too: it says that it is a DNG, or its samples lie behind a colour filter array, or
// they are in a maker's own encoding.
bool IsRawAmongTiff(LibRaw& raw) {
  return raw.imgdata.idata.dng_version != 0 || raw.imgdata.idata.filters != 0 ||
         !IsDecoderOfPlainSamples(raw);
}

// Called for each entry of a TIFF directory. The build of LibRaw 0.20.2 for Debian 12 writes
// without end, over all of its memory, when a colour filter array of 36 values comes without its
// size (6 by 6) before it; in the source, a loop leaves the row it counts through.
void RefuseEndlessPattern(void* raw, int entry, int /*type*/, int count, unsigned /*order*/,
                          void* /*stream*/, INT64 /*base*/) {
  constexpr int CFA_PATTERN = 33422;
  constexpr int CFA_PATTERN_OF_KODAK = 64777;
  constexpr unsigned SIX_BY_SIX = 9;
  const int tag = entry & 0xFFFF;
  if ((tag == CFA_PATTERN || tag == CFA_PATTERN_OF_KODAK) && count == 36 &&
      static_cast<const LibRaw*>(raw)->imgdata.idata.filters != SIX_BY_SIX) {
    throw modules::LimitReached();
  }
}

bool IsIdentified(const posix_host::RegularFile& file, Beginning beginning) {
  // LibRaw takes a TIFF file that names no camera for a raw picture without a header when it is as
  // long as one. No such picture is as long as this.
  constexpr std::int64_t BEYOND_EVERY_KNOWN_SIZE = 1 << 30;
  const bool isTiff = beginning == Beginning::TIFF;
  const auto size = static_cast<std::int64_t>(file.size());
  const auto stream =
      std::make_unique<RawStream>(file, isTiff ? size + BEYOND_EVERY_KNOWN_SIZE : size);
  // Without callbacks it prints nothing.
  const auto raw = std::make_unique<LibRaw>(LIBRAW_OPIONS_NO_MEMERR_CALLBACK |
                                            LIBRAW_OPIONS_NO_DATAERR_CALLBACK);
  raw->set_exifparser_handler(RefuseEndlessPattern, raw.get());
  // A picture of one sample a pixel has no filter array unless it says so.
  raw->imgdata.params.raw_processing_options |= LIBRAW_PROCESSING_ZEROFILTERS_FOR_MONOCHROMETIFFS;
  if (raw->open_datastream(stream.get()) != LIBRAW_SUCCESS) return false;
  return raw->imgdata.idata.raw_count > 0 && (!isTiff || IsRawAmongTiff(*raw));
}

}  // namespace
}  // namespace camera_raw

// 1 when LibRaw identifies the file as the raw picture of a camera, else 0, also when it cannot be
// read or LibRaw does not come to an end in time. `path` belongs to the caller. Throws nothing; may
// be called from all threads.
extern "C" [[gnu::visibility("default")]] int CheckForRaw(const wchar_t* path) try {
  using namespace camera_raw;
  posix_host::RegularFile file;
  std::array<char, BEGINNING_SIZE> head;
  if (!file.Open(path) || file.ReadAt(0, head.data(), head.size()) != head.size()) return 0;
  const Beginning beginning = IdentifyBeginning({head.data(), head.size()});
  return beginning != Beginning::OTHER && IsIdentified(file, beginning) ? 1 : 0;
} catch (...) {
  return 0;
}

// The module's version and its library's; belongs to the module.
extern "C" [[gnu::visibility("default")]] const char* TypeScoutModuleVersion() {
  static const std::string version =
      TYPESCOUT_VERSION_STRING ", LibRaw " + std::string(LibRaw::version());
  return version.c_str();
}
