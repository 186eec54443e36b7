#include "cli/ask/record.h"

namespace typescout::cli {

using platform::Kind;

std::string_view StateLabel(State state) {
  switch (state) {
    case State::RECOGNISED:
      return "recognised";
    case State::UNKNOWN:
      return "unknown";
    case State::EMPTY:
      return "empty";
    case State::UNREADABLE:
      return "unreadable";
    case State::CUT_SHORT:
      return "cut-short";
    case State::NOT_EXAMINED:
      return "not-examined";
  }
  return "";
}

std::string_view KindLabel(Kind kind) {
  switch (kind) {
    case Kind::FILE:
      return "file";
    case Kind::FOLDER:
      return "folder";
    case Kind::FIFO:
      return "fifo";
    case Kind::SOCKET:
      return "socket";
    case Kind::CHARACTER_DEVICE:
      return "character-device";
    case Kind::BLOCK_DEVICE:
      return "block-device";
    case Kind::LINK:
      return "link";
    case Kind::OTHER:
    case Kind::NOT_TOLD:
      break;
  }
  return "other";
}

namespace {

std::string_view KindName(Kind kind) {
  switch (kind) {
    case Kind::FIFO:
      return "FIFO";
    case Kind::CHARACTER_DEVICE:
      return "character device";
    case Kind::BLOCK_DEVICE:
      return "block device";
    case Kind::LINK:
      return "symbolic link";
    case Kind::OTHER:
      return "not a regular file";
    default:
      return KindLabel(kind);
  }
}

// As the freedesktop.org shared MIME-info specification, section 2.12, has them.
std::string_view KindMime(Kind kind) {
  switch (kind) {
    case Kind::FOLDER:
      return "inode/directory";
    case Kind::FIFO:
      return "inode/fifo";
    case Kind::SOCKET:
      return "inode/socket";
    case Kind::CHARACTER_DEVICE:
      return "inode/chardevice";
    case Kind::BLOCK_DEVICE:
      return "inode/blockdevice";
    case Kind::LINK:
      return "inode/symlink";
    default:
      return "application/octet-stream";
  }
}

}  // namespace

std::string_view Label(const Record& record) {
  if (record.filter != nullptr) return record.filter->label;
  return record.state == State::NOT_EXAMINED ? KindLabel(record.kind) : StateLabel(record.state);
}

std::string_view Name(const Record& record) {
  if (record.filter != nullptr) return record.filter->name;
  if (record.state == State::NOT_EXAMINED) return KindName(record.kind);
  return record.state == State::CUT_SHORT ? "cut short while it was read"
                                          : StateLabel(record.state);
}

std::string MimeType(const Record& record) {
  if (record.state == State::NOT_EXAMINED) return std::string(KindMime(record.kind));
  const Filter* filter = record.also == nullptr ? record.filter : record.also;
  if (filter == nullptr || filter->mime.empty()) return "application/octet-stream";
  return std::string(filter->mime);
}

Count CountedAs(State state) {
  switch (state) {
    case State::RECOGNISED:
      return Count::RECOGNISED;
    case State::UNREADABLE:
    case State::CUT_SHORT:
      return Count::UNREADABLE;
    case State::NOT_EXAMINED:
      return Count::SKIPPED;
    default:
      return Count::UNKNOWN;
  }
}

}  // namespace typescout::cli
