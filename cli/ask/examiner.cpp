#include "cli/ask/examiner.h"

#include <algorithm>
#include <exception>
#include <new>
#include <string>

#include "catalogue/content.h"
#include "cli/ask/filters.h"
#include "cli/platform/streams.h"
#include "cli/platform/system.h"

namespace typescout::cli {
namespace {

using platform::Kind;
using platform::Place;

using catalogue::HEAD_SIZE;

void Fail(State state, std::string reason, Record* record) {
  record->state = state;
  record->reason = std::move(reason);
}

// Standard input, as much of it as can make a difference. Its size is in `*size` when that is all.
// Returns what went wrong; empty when nothing did.
std::string CopyStandardInput(platform::TemporaryFile* copy, std::optional<std::uint64_t>* size) {
  std::string piece(HEAD_SIZE, '\0');
  std::string head;
  std::uint64_t total = 0;
  int error = 0;
  while (head.size() < HEAD_SIZE || catalogue::IsReadBeyondHead(head)) {
    const std::size_t wanted = head.size() < HEAD_SIZE ? HEAD_SIZE - head.size() : HEAD_SIZE;
    const std::size_t count =
        platform::ReadSome(platform::StandardInput(), piece.data(), wanted, &error);
    if (count == 0) {
      *size = total;
      break;
    }
    copy->Append({piece.data(), count});
    if (head.size() < HEAD_SIZE) head.append(piece, 0, count);
    total += count;
  }
  if (error != 0) return platform::ErrorText(error);
  if (const int failure = copy->Finish(); failure != 0) {
    return "Temporary folder " + platform::TemporaryFolder() + ": " + platform::ErrorText(failure);
  }
  return {};
}

// The rows that the options name; none for all.
std::vector<int> RowsFor(const Options& options) {
  if (options.check) return RowsNamed(*options.check);
  std::vector<int> rows;
  for (const std::string& word : options.candidates) {
    const std::vector<int> named = RowsNamed(word);
    rows.insert(rows.end(), named.begin(), named.end());
  }
  return rows;
}

}  // namespace

Asked AskedBy(const Options& options) {
  Asked asked = {.candidates = options.candidates, .requested = ""};
  if (options.requested) asked.requested = catalogue::FormatId(FilterNamed(*options.requested));
  return asked;
}

Examiner::Examiner(const Options& options, const EarlierOutput* earlier, bool needsStatus)
    : options_(options),
      earlier_(earlier),
      needsStatus_(needsStatus),
      asked_(AskedBy(options)),
      question_(RowsFor(options), options.requested ? FilterNamed(*options.requested) : 0) {}

std::vector<const Filter*> Examiner::AllAnswers(const wchar_t* path, const Filter& first) const {
  std::vector<const Filter*> all;
  if (RowOf(first) < 0) all.push_back(&first);
  std::span<const int> rows = question_.rows();
  while (const Filter* filter = question_.AskRows(path, rows)) {
    const auto found = std::find_if(rows.begin(), rows.end(), [filter](int row) {
      return catalogue::Filters()[static_cast<std::size_t>(row)].id == filter->id;
    });
    if (found == rows.end()) break;
    if (std::count(all.begin(), all.end(), filter) == 0) all.push_back(filter);
    rows = rows.subspan(static_cast<std::size_t>(found - rows.begin()) + 1);
  }
  return all;
}

void Examiner::ExamineFile(const Place& place, Record* record) const {
  const platform::PathForLibrary path(place);
  if (path.get() == nullptr) return Fail(State::UNREADABLE, "The path is too long", record);
  const std::string extension = catalogue::ExtensionOf(record->path);
  const auto readBeginning = [&place, record] {
    std::string beginning(catalogue::Question::BEGINNING, '\0');
    const int error = platform::TryToRead(place, &beginning);
    record->state = beginning.empty() ? State::EMPTY : State::UNKNOWN;
    if (error != 0) Fail(State::UNREADABLE, platform::ErrorText(error), record);
    return beginning;
  };
  auto [filter, best] = question_.Ask(path.get(), extension, readBeginning);
  if (filter == nullptr) return;
  if (options_.check) {
    best = filter;
  } else {
    record->expected = catalogue::ExpectedExtension(*best, extension);
  }
  if (options_.all) record->all = AllAnswers(path.get(), *filter);
  record->state = State::RECOGNISED;
  record->filter = filter;
  record->best = best;
}

void Examiner::ExamineContent(Record* record) const {
  platform::TemporaryFile copy(catalogue::ExtensionOf(record->path));
  std::string wrong = CopyStandardInput(&copy, &record->size);
  if (!wrong.empty()) return Fail(State::UNREADABLE, std::move(wrong), record);
  ExamineFile({nullptr, copy.path()}, record);
}

bool Examiner::CopyFromEarlier(Record* record) const {
  if (earlier_ == nullptr || !record->size) return false;
  std::optional<Record> old = earlier_->Find(record->path, FormatTime(*record->modified));
  if (!old || old->size != record->size || old->asked != record->asked) return false;
  if (options_.all && old->filter != nullptr && old->all.empty()) return false;
  if (!options_.all) old->all.clear();
  old->modified = record->modified;
  *record = std::move(*old);
  return true;
}

Record Examiner::Examine(const Input& input) const {
  Record record;
  record.path = input.path;
  record.kind = input.kind;
  record.asked = asked_;
  if (!input.error.empty()) {
    Fail(State::UNREADABLE, input.error, &record);
    return record;
  }
  try {
    if (input.type == Input::Type::CONTENT) {
      ExamineContent(&record);
      return record;
    }
    record.state = State::NOT_EXAMINED;
    if (input.kind != Kind::FILE) return record;
    const Place place = input.Place();
    if (needsStatus_) {
      const platform::Status status =
          input.status ? *input.status : platform::StatusOf(place, true);
      if (status.error == 0) {
        record.size = status.size;
        record.modified = status.modified;
      }
    }
    if (!CopyFromEarlier(&record)) ExamineFile(place, &record);
  } catch (int) {
    Fail(State::CUT_SHORT, "Became shorter while it was read", &record);
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    Fail(State::UNREADABLE, std::string("An import module failed: ") + error.what(), &record);
  } catch (...) {
    Fail(State::UNREADABLE, "An import module failed", &record);
  }
  return record;
}

}  // namespace typescout::cli
