// What is known about an input that was examined.
#ifndef TYPESCOUT_CLI_ASK_RECORD_H
#define TYPESCOUT_CLI_ASK_RECORD_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/filters.h"
#include "cli/platform/folders.h"

namespace typescout::cli {

using catalogue::Filter;

enum class State {
  RECOGNISED,
  UNKNOWN,
  EMPTY,         // no bytes, and no filter accepts that
  UNREADABLE,    // `reason` says why
  CUT_SHORT,     // became shorter while it was read
  NOT_EXAMINED,  // not a regular file; `kind` says what
};

// What became of an input since an earlier run (--compare).
enum class Change { NOT_ASKED, NONE, CHANGED, APPEARED, WENT };

// What the library was asked where that was not every filter, as --header has it.
struct Asked {
  std::vector<std::string> candidates;
  std::string requested;  // an identifier

  bool operator==(const Asked&) const = default;
};

struct Record {
  std::string path;
  State state = State::UNKNOWN;
  platform::Kind kind = platform::Kind::FILE;
  std::string reason;
  std::optional<std::uint64_t> size;  // in bytes
  std::optional<platform::Time> modified;
  // The library's answer; null unless recognised.
  const Filter* filter = nullptr;
  // The most specific filter that accepts the file, often the same; null unless recognised.
  const Filter* best = nullptr;
  // Every filter that accepts the file, in registry order; only when all were asked for.
  std::vector<const Filter*> all;
  Asked asked;
  // The extension that `best` would have, where the name has another one that does not fit.
  std::string_view expected;
  Change change = Change::NOT_ASKED;
  // The answer and the best of the earlier run, where they changed or went.
  int oldId = 0;
  int oldBestId = 0;
};

// As scripts see them: "recognised", "unknown", "empty", "unreadable", "cut-short", "not-examined".
std::string_view StateLabel(State state);
std::optional<State> StateOf(std::string_view label);

// "folder", "fifo", "socket", "character-device", "block-device", "link", "other"; "file".
std::string_view KindLabel(platform::Kind kind);
platform::Kind KindOf(std::string_view label);  // OTHER for none of these

// What Label() can be besides the filters' labels.
std::vector<std::string_view> StateLabels();

// One word for what the input is, whatever its state: the filter's label, or "unknown", "empty",
// "unreadable", "cut-short", "fifo", ... `filter` is one of the record's.
std::string_view Label(const Record& record, const Filter* filter);

// The same in readable words.
std::string_view Name(const Record& record, const Filter* filter);

// The MIME type of the filter. For what has none "application/octet-stream", for what is no file
// "inode/fifo" and so on.
std::string_view MimeType(const Record& record, const Filter* filter);

// Whether its answer or its best filter has one of these labels or families, or it is in one of
// these states.
bool IsOneOf(const Record& record, const std::vector<std::string>& words);

bool IsUnreadable(const Record& record);

// YYYY-MM-DDThh:mm:ss.nnnnnnnnnZ (RFC 3339). Years beyond 9999 have more digits; what lies more
// than 32,000 years from 1970 is shown as that year.
std::string FormatTime(const platform::Time& time);

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_ASK_RECORD_H
