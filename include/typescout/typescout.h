// TypeScout names a file's format: you give a path, it returns a number.
//
//   int filter = TypeScoutFile(L"holiday.gif");
//
// The number, here 0x0305 (a GIF picture), is a filter identifier. It names the import filter of a
// graphics suite that reads the file, and so the file's format; docs/filters.md lists all of them.
// 0 means that nothing was recognised. A missing or unreadable file is not an error: the answer is
// 0.
//
// The library has a registry of rows, each a filter identifier and a test. A scan asks the rows in
// order; the first that accepts the file decides.
//
// State and threads. No function keeps anything between calls or needs a set-up or a shutdown. All
// may be called from any thread at any time.
//
// Paths are NUL-terminated wide strings: UTF-16 on Windows; elsewhere UTF-32, which is turned into
// UTF-8 for the system, where U+DC80 to U+DCFF stand for the single bytes 0x80 to 0xFF, so that a
// name that is not valid UTF-8 can be given too. At most TYPESCOUT_PATH_LIMIT characters are
// accepted; a longer path opens nothing. Only regular files are opened, which waits for nothing but
// another process's lease on the file. No file is ever written to.
//
// Modules. Two rows ask another module of the suite when it is installed: 0x0337 (camera raw) the
// module DCRaw beside this library, 0x0535 (PDF) the module TvnPDFImport in the folder `filters`
// beside it or in the one that the environment variable TVN_FILTERS_DIR names. The variable must
// hold an absolute path and is ignored in a setuid program. A module is loaded into the calling
// process and runs there, on the calling thread. On Unix-like systems it is not loaded when users
// other than root and the effective user may change or replace it. Without the modules no file is
// camera raw, and every PDF file is 0x0535.
//
// Exceptions. When a GIF file becomes shorter while it is examined, or cannot be read on, the four
// functions that take a path throw the int 0, with everything released. What a module throws passes
// through likewise.
// Nothing else is thrown. On Windows the int can be caught as such by programs built with
// mingw-w64's g++; programs built with another compiler see the structured exception 0x20474343
// (__try, __except), with everything released too.
//
// The examples below are parts of examples/functions.cpp, which the tests compile and run.
#ifndef TYPESCOUT_TYPESCOUT_H
#define TYPESCOUT_TYPESCOUT_H

// The version of this header. docs/compatibility.md says what each part of it stands for.
#define TYPESCOUT_VERSION_MAJOR 1
#define TYPESCOUT_VERSION_MINOR 0
#define TYPESCOUT_VERSION_PATCH 0
#define TYPESCOUT_VERSION_STRING "1.0.0"
// For comparisons: 10203 is version 1.2.3.
#define TYPESCOUT_VERSION \
  (TYPESCOUT_VERSION_MAJOR * 10000 + TYPESCOUT_VERSION_MINOR * 100 + TYPESCOUT_VERSION_PATCH)

// The most bytes that are read from the start of a file; more of it is read by few rows only.
#define TYPESCOUT_HEAD_CAPACITY 50000

// The most characters of a path (wchar_t, without the NUL).
#define TYPESCOUT_PATH_LIMIT 259

#if defined(__ELF__)
#define TYPESCOUT_API __attribute__((visibility("default")))
#else
#define TYPESCOUT_API  // on Windows the import library is enough for every compiler
#endif

// On Windows the exported names are those that the platform's own compiler gives these functions;
// for other compilers they are given here.
#if defined(_WIN32) && defined(__clang__) && !defined(_MSC_VER)
#define TYPESCOUT_NAME(decorated) __asm__(decorated)
#elif defined(_WIN32) && !defined(_MSC_VER)
#define TYPESCOUT_NAME(decorated) __asm__("\"" decorated "\"")
#else
#define TYPESCOUT_NAME(decorated)
#endif

// Asks every row of the registry in order and returns the identifier of the first that accepts the
// file; 0 when none does, when the file cannot be read, or when `path` is null.
//
// One answer comes before all rows: a compound document whose root has the class identifier
// {DE14F420-AC1C-11CE-BE26-DB67235E2689} is the suite's drawing object, 0x0706. No row has this
// identifier, so the list checks below never answer it.
//
//   int filter = TypeScoutFile(L"holiday.gif");
//   if (filter == 0x0305) std::puts("a GIF picture");
//   if (filter == 0) std::puts("not recognised, or not readable");
//   if (filter != 0) std::printf("0x%04X\n", static_cast<unsigned>(filter));
TYPESCOUT_API int TypeScoutFile(const wchar_t* path) TYPESCOUT_NAME("?TypeScoutFile@@YAHPEB_W@Z");

// Asks only the rows of the filters in `ids`, in the caller's order, and returns the identifier of
// the first that accepts the file; 0 when none does.
//
//   path               the file, or null
//   ids                `count` filter identifiers. REWRITTEN in place: after the call each element
//                      is the index of the first registry row with that identifier, 0 where there
//                      is none (row 0 accepts no file). Left as it was when the file cannot be read
//                      and the buffer below cannot replace it. Null is an empty list.
//   count              0 or less is an empty list, to which the answer is 0
//   bufLen, buf        the first `bufLen` bytes of the content, examined only when the file cannot
//                      be read; never kept or written to. `buf` may be null; a negative `bufLen` is
//                      the same as no buffer.
//   requestedFilterId  the filter with which the caller means to open the file, or 0. Three values
//                      make a difference, all to PDF and Illustrator files: 0x0503, 0x0519, 0x0535.
//
//   int ids[] = {0x0322, 0x0305};
//   int filter = CheckFiltersFromIDList(L"holiday.gif", ids, 2, 0, 0, 0);
//   if (filter == 0x0305) std::puts("a GIF picture, and no PNG picture");
//   std::printf("registry rows %d and %d\n", ids[0], ids[1]);  // no identifiers any more
TYPESCOUT_API int CheckFiltersFromIDList(const wchar_t* path, int* const ids, int count, int bufLen,
                                         unsigned char* buf, int requestedFilterId)
    TYPESCOUT_NAME("?CheckFiltersFromIDList@@YAHPEB_WQEAHHHPEAEH@Z");

// The same for registry indices (0 to GetNumTypeScoutProcs() - 1) in place of identifiers. Neither
// `path` nor `indices` is written to. An index outside the registry is skipped.
//
//   wchar_t path[] = L"holiday.gif";
//   int rows[] = {40, 4};  // PNG, GIF
//   int filter = CheckFiltersFromList(path, rows, 2, 0, 0, 0);
//   if (filter == 0x0305) std::puts("a GIF picture, and no PNG picture");
TYPESCOUT_API int CheckFiltersFromList(wchar_t* path, int* const indices, int count, int bufLen,
                                       unsigned char* buf, int requestedFilterId)
    TYPESCOUT_NAME("?CheckFiltersFromList@@YAHPEA_WQEAHHHPEAEH@Z");

// 1 when a row of the filter `filterId` accepts the file at `path`, else 0; 0 for 0x0706, which
// has no row. `requestedFilterId` is as above: it does not follow from `filterId`, so a caller that
// means to open the file with that filter gives it twice. Since "nothing found" is 0, a `filterId`
// of 0 answers 1 for every path.
//
//   const wchar_t* path = L"holiday.gif";
//   if (CheckOneFilter(path, 0x0305, 0)) std::puts("the GIF filter accepts it");
//   if (!CheckOneFilter(path, 0x0322, 0)) std::puts("the PNG filter does not");
//   if (!CheckOneFilter(path, 0x0535, 0x0535)) std::puts("nor does the PDF filter");
TYPESCOUT_API int CheckOneFilter(const wchar_t* path, int filterId, int requestedFilterId)
    TYPESCOUT_NAME("?CheckOneFilter@@YAHPEB_WHH@Z");

// The number of rows in the registry, at least one.
//
//   wchar_t path[] = L"holiday.gif";
//   for (int row = 0; row < GetNumTypeScoutProcs(); ++row) {
//     if (CheckFiltersFromList(path, &row, 1, 0, 0, 0)) std::printf("row %d accepts it\n", row);
//   }
TYPESCOUT_API int GetNumTypeScoutProcs() TYPESCOUT_NAME("?GetNumTypeScoutProcs@@YAHXZ");

// 1 when `filterId` is a filter identifier of the suite (a registry row has it, it is one of
// fifteen identifiers without a row, 0x0706 among them, or it is greater than 0x3000), else 0.
// Reads no file.
//
//   if (CheckValidFilterID(0x0305)) std::puts("GIF: a row has it");
//   if (CheckValidFilterID(0x0706)) std::puts("the drawing object: valid, though without a row");
//   if (!CheckValidFilterID(0)) std::puts("0 is no filter");
//   if (!CheckValidFilterID(-1)) std::puts("nor is a negative number");
TYPESCOUT_API int CheckValidFilterID(int filterId) TYPESCOUT_NAME("?CheckValidFilterID@@YAHH@Z");

#undef TYPESCOUT_NAME
#undef TYPESCOUT_API

#endif  // TYPESCOUT_TYPESCOUT_H
