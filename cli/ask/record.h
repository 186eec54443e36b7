// What is known about one input once it has been looked at.
#ifndef TYPESCOUT_CLI_ASK_RECORD_H
#define TYPESCOUT_CLI_ASK_RECORD_H

#include <string>
#include <string_view>
#include <vector>

#include "catalogue/filters.h"
#include "cli/platform/platform.h"

namespace typescout::cli {

using catalogue::Filter;

enum class State {
  RECOGNISED,
  UNKNOWN,
  EMPTY,         // no bytes, and no filter that takes that
  UNREADABLE,    // `reason` says why
  CUT_SHORT,     // became shorter while it was read
  NOT_EXAMINED,  // not a regular file; `kind` says what
};

struct Record {
  std::string path;
  State state = State::UNKNOWN;
  platform::Kind kind = platform::Kind::FILE;
  std::string reason;
  // The library's answer; null unless recognised.
  const Filter* filter = nullptr;
  // Where `filter` is not what the file's name says: another filter that says yes as well, and is
  // the one of its name or the more exact one. Null when there is none.
  const Filter* also = nullptr;
  bool alsoFitsName = false;
  // Every filter that says yes, in registry order; only when all were asked for.
  std::vector<const Filter*> all;
  // The extension belongs to none of the filters that say yes; `expected` would.
  bool isMismatch = false;
  std::string expected;
};

// As scripts see it: "recognised", "unknown", "empty", "unreadable", "cut-short", "not-examined".
std::string_view StateLabel(State state);

// "folder", "fifo", "socket", "character-device", "block-device", "link", "other"; "file".
std::string_view KindLabel(platform::Kind kind);

// One word for what the input is, whatever its state: the filter's label, or "unknown", "empty",
// "unreadable", "cut-short", "fifo", ...
std::string_view Label(const Record& record);

// The same for people.
std::string_view Name(const Record& record);

// The MIME type of what fits best, the filter of the file's name where two say yes. For what has no
// registered one "application/octet-stream", for what is no file "inode/fifo" and so on.
std::string MimeType(const Record& record);

// What the summary counts it as.
enum class Count { RECOGNISED, UNKNOWN, UNREADABLE, SKIPPED };
Count CountedAs(State state);

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_ASK_RECORD_H
