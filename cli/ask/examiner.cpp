#include "cli/ask/examiner.h"

#include <algorithm>
#include <exception>
#include <numeric>
#include <optional>

#include "cli/output/names.h"
#include "typescout/typescout.h"

namespace typescout::cli {
namespace {

// How the library can be told this file; nothing when its path is too long every way.
std::optional<std::wstring> PathForLibrary(const Input& input) {
  std::wstring wide = ToWide(input.path);
  if (wide.size() <= TYPESCOUT_PATH_LIMIT) return wide;
  if (input.place.folder == nullptr) return std::nullopt;
  for (const std::string& folder : input.place.folder->ShortPaths()) {
    wide = ToWide(folder + input.place.name);
    if (wide.size() <= TYPESCOUT_PATH_LIMIT) return wide;
  }
  return std::nullopt;
}

void Fail(State state, std::string_view reason, Record* record) {
  record->state = state;
  record->reason = reason;
}

}  // namespace

// What is handed to the library.
struct Examiner::Subject {
  std::optional<std::wstring> path;
  std::string content;

  const wchar_t* Path() const { return path ? path->c_str() : nullptr; }
};

Examiner::Examiner(const Options& options) : options_(options), rows_(options.candidates) {
  if (options.check != 0) {
    const Filter* filter = catalogue::FindFilter(options.check);
    // Identifiers without a row match nothing, as row 0 does.
    rows_ = {filter == nullptr ? 0 : std::max(RowOf(*filter), 0)};
  }
  if (!rows_.empty()) return;
  rows_.resize(catalogue::Filters().size());
  std::iota(rows_.begin(), rows_.end(), 0);
}

int Examiner::Ask(const Subject& subject, const std::vector<int>& rows) const {
  // The functions take pointers to what they never write.
  auto* bytes = reinterpret_cast<unsigned char*>(const_cast<char*>(subject.content.data()));
  return CheckFiltersFromList(const_cast<wchar_t*>(subject.Path()), const_cast<int*>(rows.data()),
                              static_cast<int>(rows.size()),
                              subject.path ? 0 : static_cast<int>(subject.content.size()),
                              subject.path ? nullptr : bytes, options_.requested);
}

int Examiner::FirstAnswer(const Subject& subject) const {
  const bool asksAll = options_.candidates.empty() && options_.check == 0;
  const bool isPlainScan = asksAll && options_.requested == 0;
  return isPlainScan && subject.path ? TypeScoutFile(subject.Path()) : Ask(subject, rows_);
}

std::vector<const Filter*> Examiner::AllAnswers(const Subject& subject, const Filter& first) const {
  std::vector<const Filter*> all;
  if (RowOf(first) < 0) all.push_back(&first);
  std::vector<int> rows = rows_;
  while (const int id = Ask(subject, rows)) {
    const auto found = std::find_if(rows.begin(), rows.end(), [id](int row) {
      return catalogue::Filters()[static_cast<std::size_t>(row)].id == id;
    });
    if (found == rows.end()) break;
    const Filter* filter = catalogue::FindFilter(id);
    if (std::find(all.begin(), all.end(), filter) == all.end()) all.push_back(filter);
    rows.erase(rows.begin(), found + 1);
  }
  return all;
}

void Examiner::CompareWithName(const Subject& subject, Record* record) const {
  const Filter& first = *record->filter;
  const std::string extension = catalogue::ExtensionOf(record->path);
  const std::vector<int> better = catalogue::RowsThatDescribeBetter(first, extension, rows_);
  if (!better.empty()) {
    if (const int id = Ask(subject, better); id != 0) record->also = catalogue::FindFilter(id);
  }
  const Filter& best = record->also == nullptr ? first : *record->also;
  record->alsoFitsName = record->also != nullptr && HasExtension(best, extension);
  record->expected = catalogue::ExpectedExtension(best, extension);
  record->isMismatch = !record->expected.empty();
}

// The library answers 0 for everything that it has nothing to say about.
void Examiner::FindOutWhy(const Input& input, Record* record) const {
  if (input.isContent) {
    record->state = input.content.empty() ? State::EMPTY : State::UNKNOWN;
    return;
  }
  const platform::Status status = platform::WhyUnreadable(input.place);
  if (status.error != 0) return Fail(State::UNREADABLE, platform::ErrorText(status.error), record);
  record->kind = status.kind;
  if (status.kind != platform::Kind::FILE) {
    record->state = State::NOT_EXAMINED;
  } else {
    record->state = status.size == 0 ? State::EMPTY : State::UNKNOWN;
  }
}

void Examiner::ExamineContent(const Input& input, Record* record) const {
  Subject subject;
  if (input.isContent) {
    subject.content = input.content;
  } else {
    subject.path = PathForLibrary(input);
    if (!subject.path) return Fail(State::UNREADABLE, "The path is too long", record);
  }
  const int id = FirstAnswer(subject);
  if (id == 0) return FindOutWhy(input, record);
  record->state = State::RECOGNISED;
  record->filter = catalogue::FindFilter(id);
  if (options_.check != 0) return;
  if (options_.all) record->all = AllAnswers(subject, *record->filter);
  CompareWithName(subject, record);
}

Record Examiner::Examine(const Input& input) const {
  Record record;
  record.path = input.path;
  record.kind = input.kind;
  if (!input.reason.empty()) {
    Fail(State::UNREADABLE, input.reason, &record);
  } else if (input.kind != platform::Kind::FILE) {
    record.state = State::NOT_EXAMINED;
  } else {
    try {
      ExamineContent(input, &record);
    } catch (int) {
      Fail(State::CUT_SHORT, "Became shorter while it was read", &record);
    } catch (const std::exception& error) {
      Fail(State::UNREADABLE, std::string("An import module failed: ") + error.what(), &record);
    } catch (...) {
      Fail(State::UNREADABLE, "An import module failed", &record);
    }
  }
  if (record.state != State::RECOGNISED) {
    record.filter = nullptr;
    record.also = nullptr;
    record.all.clear();
    record.isMismatch = false;
    record.expected.clear();
  }
  return record;
}

}  // namespace typescout::cli
