// The host suite's path helpers. Both '/' and '\' separate components here, on every system.
#ifndef TYPESCOUT_HOST_PATH_H
#define TYPESCOUT_HOST_PATH_H

#include "host/strings.h"

namespace SystemIO::Path {

// Whether the last component of `path` ends in `extension` (with its dot); ASCII case is ignored.
bool HasExtension(const wchar_t* path, const wchar_t* extension);

// The last component's extension, from its last dot on; empty when it has no dot.
TvnPlatform::TvnStringT<wchar_t> GetExtension(const wchar_t* path);

// The same in upper case (ASCII letters), as the runtime's own path splitting and upper-casing give
// it where there are such (_wsplitpath, _wcsupr).
TvnPlatform::TvnStringT<wchar_t> GetUpperExtension(const wchar_t* path);

// `directory` and `file` joined, with one separator between them. An empty directory gives an empty
// path: it never means the current folder.
TvnPlatform::TvnStringT<wchar_t> Combine(const wchar_t* directory, const wchar_t* file);

}  // namespace SystemIO::Path

#endif  // TYPESCOUT_HOST_PATH_H
