// What people call the filters: labels, names, MIME types, extensions, and which filter describes a
// file best when several accept it. One row for each row of the library's registry, in its order; a
// test compares the two. The program and the bindings are built on it; the library is not.
#ifndef TYPESCOUT_CATALOGUE_FILTERS_H
#define TYPESCOUT_CATALOGUE_FILTERS_H

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace typescout::catalogue {

// How much is known about a file that the row accepts. Where several rows accept it, the one whose
// kind comes later in this list describes it better.
enum class Evidence {
  NEVER,      // the row accepts nothing
  TEXT,       // any text
  NO_MAGIC,   // a few small numbers that files of other formats have too
  SEVERAL,    // one of several formats, of which other rows tell one alone
  SIGNATURE,  // a signature or a structure of the format's own
};

struct Filter {
  int id;
  // What scripts match on: lower case, no spaces. Once published, a label never changes. Two rows
  // have the same one exactly when they have the same identifier.
  std::string_view label;
  std::string_view name;
  // As registered with IANA, else as in the freedesktop.org database, else the customary x- name;
  // empty for a format without a common name.
  std::string_view mime;
  // Lower case, separated by spaces, the usual one first; may be empty.
  std::string_view extensions;
  Evidence evidence;
  // The identifiers of earlier rows, padded with 0. A full scan of any file that this row
  // accepts answers one of them, except for files of three bytes or less. All 0: a full scan can
  // answer this row.
  std::array<int, 3> hiddenBy;
};

// One filter for each row of the registry; the place is the registry index.
std::span<const Filter> Filters();

// The filter with this identifier, the first row when several have it; null when there is none.
// Also finds the drawing object in a compound document, which the library reports but has no row
// for.
const Filter* FindFilter(int id);

// The same by label.
const Filter* FindFilter(std::string_view label);

// The row of a filter of Filters() or FindFilter(), or -1 for the drawing object.
int RowOf(const Filter& filter);

// "raster", "vector", "media", "native", "document" or "text"; empty for an identifier of no
// family.
std::string_view Family(int id);

// Four hexadecimal digits: 0x0305.
std::string FormatId(int id);

// The extension of the last component of `path`, without the dot, ASCII letters in lower case.
// Empty for a name without a dot or whose only dot is its first character. `/` and `\` separate.
std::string ExtensionOf(std::string_view path);

// Whether `extension` (as ExtensionOf gives it) is one of the filter's.
bool HasExtension(const Filter& filter, std::string_view extension);

// The usual extension; empty when none is known.
std::string_view UsualExtension(const Filter& filter);

// Whether files with this extension may well be plain text: no filter has it but those for any
// text.
bool MayNameText(std::string_view extension);

// Which rows to ask about a file that `answer` accepted, in this order: the first that accepts it
// describes the file best, and when none does, `answer` does. `asked` are the rows that gave the
// answer, in the order in which they were asked; empty for all. Rows that were asked before
// `answer` are left out, since they refused the file. `extension` is the file's; it decides between
// rows of the same evidence only.
std::vector<int> RowsThatDescribeBetter(const Filter& answer, std::string_view extension,
                                        std::span<const int> asked = {});

// The extension that a file described best by `best` should have, when `extension` does not fit it;
// empty when it fits, is empty, or nothing better is known. Text may have the extension of any
// format that is written as text, and one that belongs to no filter.
std::string_view ExpectedExtension(const Filter& best, std::string_view extension);

}  // namespace typescout::catalogue

#endif  // TYPESCOUT_CATALOGUE_FILTERS_H
