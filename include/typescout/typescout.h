// TypeScout: which import filter can read this file?
//
// Six functions. None keeps anything between calls, none needs a set-up or a shutdown, all may be
// called from any thread at any time.
//
// A file is named by a NUL-terminated wide string: UTF-16 on Windows; elsewhere UTF-32, turned into
// UTF-8 for the system, where U+DC80 to U+DCFF stand for the single bytes 0x80 to 0xFF, so that a
// name that is not valid UTF-8 can be given too. At most 259 characters are accepted; a longer path
// opens nothing.
//
// A filter identifier is a 32-bit number that names one import filter (0x0305 a GIF picture); 0
// means that nothing was recognised. A missing, unreadable or unrecognised file is not an error: it
// answers 0. Only regular files are opened, and opening never blocks.
//
// Two rows ask a module of the suite when it is installed: DCRaw beside this module, and TvnPDFImport
// in the folder `filters` beside it or in the one that the environment variable TVN_FILTERS_DIR
// names. The variable must hold an absolute path and is ignored in a setuid program. On Unix-like
// systems a module is not loaded when anybody but root and the effective user may change it or
// replace it.
//
// Exceptions: one. When a GIF file becomes shorter while it is examined, the four functions that
// take a path throw the int 0, with everything released. What a loaded module of the suite (camera
// raw, PDF import) throws passes through likewise. Nothing else is thrown.
// On Windows the int is what a program built with mingw-w64's g++ catches; one of another
// compiler's sees the structured exception 0x20474343 (__try, __except), with everything released
// too.
#ifndef TYPESCOUT_TYPESCOUT_H
#define TYPESCOUT_TYPESCOUT_H

#if defined(__ELF__)
#define TYPESCOUT_API __attribute__((visibility("default")))
#else
#define TYPESCOUT_API  // on Windows the import library is enough, whoever compiles
#endif

// On Windows the exported names are those of the platform's own compiler. The others are told them.
#if defined(_WIN32) && defined(__clang__) && !defined(_MSC_VER)
#define TYPESCOUT_NAME(decorated) __asm__(decorated)
#elif defined(_WIN32) && !defined(_MSC_VER)
#define TYPESCOUT_NAME(decorated) __asm__("\"" decorated "\"")
#else
#define TYPESCOUT_NAME(decorated)
#endif

// Asks every row of the registry in order and returns the identifier of the first that accepts the
// file at `path`; 0 when none does, when the file cannot be read, or when `path` is null.
TYPESCOUT_API int TypeScoutFile(const wchar_t* path) TYPESCOUT_NAME("?TypeScoutFile@@YAHPEB_W@Z");

// Asks only the filters in `ids`, in the caller's order, and returns the identifier of the first
// that accepts the file; 0 when none does.
//
//   path               the file, or null
//   ids                `count` filter identifiers; REWRITTEN in place: after the call each holds
//                      the index of the first registry row with that identifier, 0 where there is
//                      none. Left as it was when the call ends before the scan: when the file
//                      cannot be read and the buffer below cannot stand in for it.
//   count              0 or less is an empty list
//   bufLen, buf        `bufLen` first bytes of the content, examined only when the file cannot be
//                      read; read, never kept. `buf` may be null; a negative `bufLen` is the same
//                      as no buffer.
//   requestedFilterId  the filter that the caller means to use, or 0; the Illustrator and PDF rows
//                      look at it
TYPESCOUT_API int CheckFiltersFromIDList(const wchar_t* path, int* const ids, int count, int bufLen,
                                         unsigned char* buf, int requestedFilterId)
    TYPESCOUT_NAME("?CheckFiltersFromIDList@@YAHPEB_WQEAHHHPEAEH@Z");

// The same for registry indices (0 to GetNumTypeScoutProcs() - 1) in place of identifiers. Neither
// `indices` nor `path` is written to. An index outside the registry is skipped.
TYPESCOUT_API int CheckFiltersFromList(wchar_t* path, int* const indices, int count, int bufLen,
                                       unsigned char* buf, int requestedFilterId)
    TYPESCOUT_NAME("?CheckFiltersFromList@@YAHPEA_WQEAHHHPEAEH@Z");

// 1 when the filter `filterId` accepts the file at `path`, else 0. Since "nothing found" is 0, a
// `filterId` of 0 answers 1 for every path.
TYPESCOUT_API int CheckOneFilter(const wchar_t* path, int filterId, int requestedFilterId)
    TYPESCOUT_NAME("?CheckOneFilter@@YAHPEB_WHH@Z");

// The number of rows in the registry: 108.
TYPESCOUT_API int GetNumTypeScoutProcs() TYPESCOUT_NAME("?GetNumTypeScoutProcs@@YAHXZ");

// 1 when `filterId` is a filter identifier of the suite (a registry row has it, it is one of the
// identifiers without a row, or it lies above 0x3000), else 0. Reads no file.
TYPESCOUT_API int CheckValidFilterID(int filterId) TYPESCOUT_NAME("?CheckValidFilterID@@YAHH@Z");

#undef TYPESCOUT_NAME
#undef TYPESCOUT_API

#endif  // TYPESCOUT_TYPESCOUT_H
