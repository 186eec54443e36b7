// The output of an earlier run with --jsonl (or --json), for --since and --compare.
#ifndef TYPESCOUT_CLI_ASK_EARLIER_OUTPUT_H
#define TYPESCOUT_CLI_ASK_EARLIER_OUTPUT_H

#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/ask/record.h"

namespace typescout::cli {

// Only the place of each record is kept in memory, 24 bytes for each. Safe to use from several
// threads.
class EarlierOutput {
 public:
  // Reads the file once. Lines that are no records, such as one that an interrupted run did not
  // finish, are skipped.
  explicit EarlierOutput(const std::string& file);
  ~EarlierOutput();
  EarlierOutput(const EarlierOutput&) = delete;
  EarlierOutput& operator=(const EarlierOutput&) = delete;

  // Why the file could not be read; 0 when it could.
  int error() const { return error_; }

  // Whether the file has a record or a header, or is what a run without inputs or one that was
  // interrupted early has written.
  bool IsOutput() const { return isOutput_; }

  // How its first record was asked; nothing when it has none.
  const std::optional<Asked>& asked() const { return asked_; }

  // What the output was made with (--header), as an object in one line; empty when it does not say.
  const std::string& header() const { return header_; }

  // The record of this path and, unless it is empty, of this time of change (as in "mtime").
  // `modified` is not filled in.
  std::optional<Record> Find(std::string_view path, std::string_view modified) const;

  // Marks the records of the path as met, and returns the first of them.
  std::optional<Record> Meet(std::string_view path);

  // Calls `each` with the records that were not met, in the file's order.
  void ForEachMissed(const std::function<void(Record)>& each) const;

 private:
  struct Place {
    std::uint64_t hash;  // of the path as it is written
    std::uint64_t offset;
    std::uint32_t length;
    bool isMet;
  };

  void Index(std::string_view line, std::uint64_t offset);
  std::string ReadLine(const Place& place) const;
  std::vector<std::size_t> PlacesOf(std::string_view path) const;

  std::intptr_t handle_ = -1;
  int error_ = 0;
  bool isOutput_ = true;
  std::optional<Asked> asked_;
  std::string header_;
  std::vector<Place> places_;  // sorted by hash, then by offset
  std::mutex mutex_;           // for isMet
};

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_ASK_EARLIER_OUTPUT_H
