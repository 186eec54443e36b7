// Fuzz target: what the program parses. The first choice behind the input (fuzz/choices.h) says as
// what: options, a template, a list of paths, the output of an earlier run, a pattern or text.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "cli/ask/earlier_output.h"
#include "cli/escape.h"
#include "cli/input/glob.h"
#include "cli/input/path_list.h"
#include "cli/options.h"
#include "cli/output/template.h"
#include "cli/output/writers.h"
#include "cli/utf8.h"
#include "fuzz/choices.h"
#include "fuzz/memory_file.h"

namespace {

using namespace typescout::cli;
using fuzz::Choices;

void Require(bool condition) {
  if (!condition) std::abort();
}

// A record of any state, whose path is `path`.
Record MakeRecord(Choices* choices, const std::string& path) {
  constexpr State STATES[] = {State::RECOGNISED, State::UNKNOWN,   State::EMPTY,
                              State::UNREADABLE, State::CUT_SHORT, State::NOT_EXAMINED};
  Record record;
  record.path = path;
  record.state = choices->Among(STATES);
  record.reason = path;
  if (record.state == State::RECOGNISED) {
    record.filter = record.best = typescout::catalogue::FindFilter(0x0305);
    record.all = {record.filter, record.best};
  }
  if (choices->Next() % 2 == 1) record.modified = {INT64_MIN, 0};
  return record;
}

void TakeOptions(Choices* choices, const std::string& content) {
  Options options;
  std::vector<std::string> arguments;
  for (const std::string_view part : Split(content, '\n')) arguments.emplace_back(part);
  const std::string wrong = ParseOptions(arguments, &options);
  Require(wrong.find('\n') == std::string::npos);
  if (!wrong.empty() || options.shape == Shape::NOTHING) return;
  const auto writer = MakeWriter(options, choices->Next() % 2 == 1, choices->Next() % 2 == 1);
  writer->Format(MakeRecord(choices, content));
}

void TakeTemplate(Choices* choices, const std::string& content) {
  if (!CheckTemplate(content).empty()) return;
  const bool forTerminal = choices->Next() % 2 == 1;
  FillTemplate(content, MakeRecord(choices, content), forTerminal);
}

void TakeList(Choices* choices, const std::string& file) {
  const bool endsInNul = choices->Next() % 2 == 1;
  PathList list(file, endsInNul);
  std::string path;
  for (;;) {
    const PathList::Result result = list.Next(&path);
    if (result == PathList::Result::END) break;
    Require(!path.empty() && path.size() <= LONGEST_ENTRY);
    if (result == PathList::Result::PATH) {
      Require(path.find(endsInNul ? '\0' : '\n') == std::string::npos);
    }
  }
  Require(list.error() == 0);
}

void TakeEarlierOutput(const std::string& file) {
  EarlierOutput earlier(file);
  Require(earlier.error() == 0);
  Options options;
  options.shape = Shape::JSON_LINES;
  const auto writer = MakeWriter(options, false, false);
  std::string firstPath;
  earlier.ForEachMissed([&](const Record& record) {
    firstPath = record.path;
    Require(IsValidUtf8(writer->Format(record)));
  });
  earlier.Meet(firstPath);
  earlier.Find(firstPath, "");
}

void TakePattern(const std::string& content) {
  const std::size_t end = content.find('\n');
  const std::string_view path = std::string_view(content).substr(end == content.npos ? 0 : end + 1);
  Glob(content.substr(0, end)).Matches(path, path.substr(path.find_last_of('/') + 1), true);
}

void TakeText(const std::string& content) {
  Require(FromBase64(Base64(content)) == content);
  if (IsValidUtf8(content)) Require(FromWide(ToWide(content)) == content);
  ToWide(content);
  Require(IsValidUtf8(EscapeControls(content)));
  std::string json;
  AppendJsonString(content, &json);
  Require(IsValidUtf8(json));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Choices choices(data, size);
  const std::string content = choices.Content();
  const MemoryFile file(data, content.size());
  const int kind = choices.Next() % 6;
  if (kind == 0) TakeOptions(&choices, content);
  if (kind == 1) TakeTemplate(&choices, content);
  if (kind == 2) TakeList(&choices, FromWide(file.path()));
  if (kind == 3) TakeEarlierOutput(FromWide(file.path()));
  if (kind == 4) TakePattern(content);
  if (kind == 5) TakeText(content);
  return 0;
}
