#include "cli/ask/examiner.h"

#include <algorithm>
#include <exception>
#include <new>
#include <numeric>
#include <string>

#include "catalogue/content.h"
#include "cli/ask/filters.h"
#include "cli/platform/streams.h"
#include "cli/platform/system.h"
#include "typescout/typescout.h"

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
// Returns the error, 0 for none.
int CopyStandardInput(platform::TemporaryFile* copy, std::optional<std::uint64_t>* size) {
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
  return error != 0 ? error : copy->Finish();
}

}  // namespace

Examiner::Examiner(const Options& options, const EarlierOutput* earlier, bool needsStatus)
    : options_(options), earlier_(earlier), needsStatus_(needsStatus) {
  if (options.requested) requested_ = FilterNamed(*options.requested);
  for (const std::string& word : options.candidates) {
    const std::vector<int> rows = RowsNamed(word);
    rows_.insert(rows_.end(), rows.begin(), rows.end());
  }
  if (options.check) rows_ = RowsNamed(*options.check);
  isPlainScan_ = rows_.empty() && requested_ == 0;
  if (!rows_.empty()) return;
  rows_.resize(catalogue::Filters().size());
  std::iota(rows_.begin(), rows_.end(), 0);
  rowsTextLast_ = rows_;
  std::stable_partition(rowsTextLast_.begin(), rowsTextLast_.end(), [](int row) {
    return catalogue::Filters()[static_cast<std::size_t>(row)].evidence !=
           catalogue::Evidence::TEXT;
  });
}

int Examiner::Ask(const wchar_t* path, std::span<const int> rows) const {
  // The function takes pointers to what it never writes.
  return CheckFiltersFromList(const_cast<wchar_t*>(path), const_cast<int*>(rows.data()),
                              static_cast<int>(rows.size()), 0, nullptr, requested_);
}

const Filter* Examiner::Best(const wchar_t* path, const Filter& answer,
                             std::string_view extension) const {
  const std::vector<int> better = catalogue::RowsThatDescribeBetter(answer, extension, rows_);
  const int id = better.empty() ? 0 : Ask(path, better);
  return id == 0 ? &answer : catalogue::FindFilter(id);
}

std::vector<const Filter*> Examiner::AllAnswers(const wchar_t* path, const Filter& first) const {
  std::vector<const Filter*> all;
  if (RowOf(first) < 0) all.push_back(&first);
  std::span<const int> rows = rows_;
  while (const int id = Ask(path, rows)) {
    const auto found = std::ranges::find_if(rows, [id](int row) {
      return catalogue::Filters()[static_cast<std::size_t>(row)].id == id;
    });
    if (found == rows.end()) break;
    const Filter* filter = catalogue::FindFilter(id);
    if (std::ranges::find(all, filter) == all.end()) all.push_back(filter);
    rows = rows.subspan(static_cast<std::size_t>(found - rows.begin()) + 1);
  }
  return all;
}

// The library's answer, null for none; the record's state and reason tell why. `*isBest`:
// nothing describes the file better.
const Filter* Examiner::FirstAnswer(const Place& place, const wchar_t* path, bool mayBeText,
                                    bool* isBest, Record* record) const {
  const auto scan = [this, path] { return isPlainScan_ ? TypeScoutFile(path) : Ask(path, rows_); };
  // Most files are text, and of a text it has to be asked whether a row behind those for any text
  // describes it better. With these rows at the end of the list one call tells both. It does not
  // look at the class of a compound document, as TypeScoutFile() does, so it counts only where
  // there is none.
  const Filter* filter = catalogue::FindFilter(mayBeText ? Ask(path, rowsTextLast_) : scan());
  *isBest = mayBeText && filter != nullptr && filter->evidence == catalogue::Evidence::TEXT;
  if (filter != nullptr) return !mayBeText || *isBest ? filter : catalogue::FindFilter(scan());

  // The library answers 0 for everything that it has nothing to say about.
  std::string beginning(8, '\0');
  const int error = platform::TryToRead(place, &beginning);
  if (mayBeText && catalogue::IsCompoundDocument(beginning)) filter = catalogue::FindFilter(scan());
  record->state = beginning.empty() ? State::EMPTY : State::UNKNOWN;
  if (error != 0) Fail(State::UNREADABLE, platform::ErrorText(error), record);
  return filter;
}

void Examiner::ExamineFile(const Place& place, Record* record) const {
  const platform::PathForLibrary path(place);
  if (path.get() == nullptr) return Fail(State::UNREADABLE, "The path is too long", record);
  const std::string extension = catalogue::ExtensionOf(record->path);
  const bool mayBeText = isPlainScan_ && catalogue::MayNameText(extension);
  bool isBest = false;
  const Filter* filter = FirstAnswer(place, path.get(), mayBeText, &isBest, record);
  if (filter == nullptr) return;
  const Filter* best = filter;
  if (!options_.check) {
    if (!isBest) best = Best(path.get(), *filter, extension);
    if (options_.all) record->all = AllAnswers(path.get(), *filter);
    record->expected = catalogue::ExpectedExtension(*best, extension);
  }
  record->state = State::RECOGNISED;
  record->filter = filter;
  record->best = best;
}

void Examiner::ExamineContent(Record* record) const {
  platform::TemporaryFile copy(catalogue::ExtensionOf(record->path));
  const int error = CopyStandardInput(&copy, &record->size);
  if (error != 0) return Fail(State::UNREADABLE, platform::ErrorText(error), record);
  ExamineFile({nullptr, copy.path()}, record);
}

bool Examiner::CopyFromEarlier(Record* record) const {
  if (earlier_ == nullptr || !record->size) return false;
  std::optional<Record> old = earlier_->Find(record->path, FormatTime(*record->modified));
  if (!old || old->size != record->size) return false;
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
