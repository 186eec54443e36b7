// The first bytes of raw pictures.
#ifndef TYPESCOUT_MODULES_CAMERA_RAW_BEGINNINGS_H
#define TYPESCOUT_MODULES_CAMERA_RAW_BEGINNINGS_H

#include <cstddef>
#include <string_view>

namespace camera_raw {

// How many of a file's first bytes IdentifyBeginning() looks at. No raw picture is shorter.
inline constexpr std::size_t BEGINNING_SIZE = 64;

enum class Beginning {
  OTHER,   // no raw picture begins like this
  TIFF,    // may be a raw picture, or any other TIFF file
  CAMERA,  // only raw pictures begin like this
};

// `head` holds BEGINNING_SIZE bytes.
Beginning IdentifyBeginning(std::string_view head);

}  // namespace camera_raw

#endif  // TYPESCOUT_MODULES_CAMERA_RAW_BEGINNINGS_H
