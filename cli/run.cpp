#include "cli/run.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>
#include <utility>

#include "cli/ask/examiner.h"
#include "cli/ask/pipeline.h"
#include "cli/input/input_source.h"
#include "cli/output/output.h"
#include "cli/output/progress.h"
#include "cli/output/summary.h"
#include "cli/output/writers.h"
#include "cli/platform/modules.h"
#include "cli/platform/signals.h"
#include "cli/platform/streams.h"
#include "cli/platform/system.h"

namespace typescout::cli {
namespace {

using platform::Stream;

bool IsAllowed(std::string_view when, bool automatically) {
  return when == "always" || (when == "auto" && automatically);
}

bool MayColor(const Options& options) {
  using platform::Environment;
  const bool automatically = platform::IsTerminal(Stream::OUTPUT) &&
                             Environment("NO_COLOR").empty() && Environment("TERM") != "dumb";
  return IsAllowed(options.color, automatically);
}

// Another program that reads the output may be writing to the same terminal.
bool MayShowProgress(const Options& options) {
  return IsAllowed(options.progress,
                   platform::IsTerminal(Stream::MESSAGES) && platform::IsFile(Stream::OUTPUT));
}

class Runner {
 public:
  Runner(const Options& options, EarlierOutput* since, EarlierOutput* compare)
      : options_(options),
        compare_(compare),
        writer_(MakeWriter(options, isTerminal_, MayColor(options))),
        examiner_(options, since, options.summary || since != nullptr || writer_->NeedsStatus()),
        source_(options),
        progress_(MayShowProgress(options), source_.Total()),
        pipeline_(
            ThreadCount(), [this](Input* input) { return Next(input); },
            [this](const Input& input) { return Examine(input); }) {}

  int Run() {
    platform::CatchInterrupts();
    std::vector<Pipeline::OutcomePtr> outcomes;
    for (bool hasMore = true; hasMore;) {
      outcomes.clear();
      hasMore = pipeline_.Take(&outcomes);
      for (const Pipeline::OutcomePtr& outcome : outcomes) Write(*outcome);
      // Finished records are written before waiting for more.
      if (isTerminal_ || outcomes.empty()) output_.Flush();
      CheckOutput();
      progress_.Update(inputs_);
      if (platform::IsInterrupted()) EndInterrupted();
    }
    if (inputs_ == 0 && options_.check) Refuse("--check: no input");
    if (compare_ != nullptr) {
      compare_->ForEachMissed([this](Record record) { Write(WentSince(std::move(record))); });
    }
    Close();
    return Status();
  }

 private:
  // More threads than files can be open would find readable files unreadable.
  unsigned ThreadCount() const {
    constexpr std::uint64_t OPEN_FILES_OF_A_THREAD = 8;
    const std::uint64_t threads =
        std::min<std::uint64_t>({options_.jobs, source_.Total().value_or(options_.jobs),
                                 platform::RaiseOpenFileLimit() / OPEN_FILES_OF_A_THREAD});
    return static_cast<unsigned>(std::max<std::uint64_t>(threads, 1));
  }

  // Called by one thread at a time.
  Pipeline::Supply Next(Input* input) {
    if (!source_.Next(input)) return Pipeline::Supply::END;
    if (!std::exchange(hasInput_, true) && source_.Total() != 1) platform::HoldModules();
    return source_.IsWalking() ? Pipeline::Supply::INPUT_AND_MORE : Pipeline::Supply::INPUT;
  }

  // Called from several threads.
  Outcome Examine(const Input& input) const {
    Outcome outcome;
    outcome.type = input.type;
    if (input.type == Input::Type::LIST_ERROR || input.type == Input::Type::BAD_LIST) {
      outcome.message = input.error;
      return outcome;
    }
    Record& record = outcome.record;
    record = examiner_.Examine(input);
    if (IsUnreadable(record) && !options_.quiet) {
      outcome.message = record.path + ": " + record.reason;
    }
    if (compare_ != nullptr) Compare(compare_->Meet(record.path), &record);
    Show(&outcome);
    return outcome;
  }

  static void Compare(const std::optional<Record>& old, Record* record) {
    if (!old) {
      record->change = Change::APPEARED;
      return;
    }
    const bool isSame = old->state == record->state && old->kind == record->kind &&
                        old->filter == record->filter && old->best == record->best;
    record->change = isSame ? Change::NONE : Change::CHANGED;
    record->oldId = old->filter == nullptr ? 0 : old->filter->id;
    record->oldBestId = old->best == nullptr ? 0 : old->best->id;
  }

  // The record stays what it was.
  Outcome WentSince(Record old) const {
    Outcome outcome;
    Compare(old, &old);
    outcome.record = std::move(old);
    outcome.record.change = Change::WENT;
    Show(&outcome);
    return outcome;
  }

  void Show(Outcome* outcome) const {
    const Record& record = outcome->record;
    outcome->isShown = (!options_.mismatch || !record.expected.empty()) &&
                       record.change != Change::NONE &&
                       (options_.only.empty() || IsOneOf(record, options_.only));
    if (outcome->isShown) outcome->output = writer_->Format(record);
  }

  void Write(const Outcome& outcome) {
    if (outcome.type == Input::Type::BAD_LIST) Refuse(outcome.message);
    if (!outcome.message.empty()) {
      progress_.Clear();
      // On a terminal, output and messages must appear in order.
      if (isTerminal_) output_.Flush();
      Complain(outcome.message);
    }
    isListUnreadable_ |= outcome.type == Input::Type::LIST_ERROR;
    if (outcome.type == Input::Type::LIST_ERROR) return;
    const Record& record = outcome.record;
    changes_ += record.change != Change::NOT_ASKED && record.change != Change::NONE;
    if (record.change != Change::WENT) Count(outcome);
    if (outcome.output.empty()) return;
    output_.Append(std::exchange(hasWritten_, true) ? writer_->Between() : writer_->Begin());
    output_.Append(outcome.output);
  }

  void Count(const Outcome& outcome) {
    const Record& record = outcome.record;
    ++inputs_;
    unreadable_ += IsUnreadable(record);
    unknown_ += record.state == State::UNKNOWN || record.state == State::EMPTY;
    recognised_ += record.state == State::RECOGNISED;
    mismatches_ += !record.expected.empty();
    if (options_.summary && outcome.isShown) summary_.Add(record);
  }

  // Ends the output in its form.
  void Close() {
    output_.Append(hasWritten_ ? writer_->End() : writer_->Nothing());
    if (options_.summary) {
      output_.Append(options_.shape == Shape::JSON
                         ? summary_.AsJson()
                         : summary_.AsText(platform::TerminalWidth(Stream::OUTPUT)));
    }
    output_.Flush();
    progress_.Clear();
    CheckOutput();
  }

  void CheckOutput() {
    if (output_.error() == 0) return;
    progress_.Clear();
    if (platform::IsInterrupted()) platform::EndInterrupted();
    if (platform::IsClosedPipe(output_.error())) platform::EndClosedPipe();
    Complain("standard output: " + platform::ErrorText(output_.error()));
    platform::EndNow(ExitStatus::OUTPUT_FAILED);
  }

  // The inputs that are under way get a second; threads that are still busy then are left behind.
  [[noreturn]] void EndInterrupted() {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point end = Clock::now() + std::chrono::seconds(1);
    std::vector<Pipeline::OutcomePtr> outcomes;
    for (bool hasMore = true; hasMore && Clock::now() < end;) {
      outcomes.clear();
      hasMore = pipeline_.Take(&outcomes);
      for (const Pipeline::OutcomePtr& outcome : outcomes) Write(*outcome);
    }
    Close();
    platform::EndInterrupted();
  }

  // Ends the run because a list is invalid; what was written so far stays.
  [[noreturn]] void Refuse(const std::string& message) {
    Close();
    Complain(message);
    platform::EndNow(ExitStatus::USAGE);
  }

  int Status() const {
    const auto failsOn = [this](std::string_view what) {
      return std::count(options_.failOn.begin(), options_.failOn.end(), what) != 0;
    };
    const bool isUnreadable = isListUnreadable_ || unreadable_ != 0;
    if (isUnreadable && !failsOn("unreadable")) return ExitStatus::UNREADABLE;
    const bool isFound = isUnreadable || (failsOn("unknown") && unknown_ != 0) ||
                         (failsOn("mismatch") && mismatches_ != 0) || changes_ != 0 ||
                         (options_.check && recognised_ != inputs_);
    return isFound ? ExitStatus::FOUND : ExitStatus::DONE;
  }

  const Options& options_;
  const bool isTerminal_ = platform::IsTerminal(Stream::OUTPUT);
  EarlierOutput* compare_;
  std::unique_ptr<Writer> writer_;
  Examiner examiner_;
  InputSource source_;
  bool hasInput_ = false;
  Output output_;
  Progress progress_;
  Summary summary_;
  bool hasWritten_ = false;
  bool isListUnreadable_ = false;
  std::uint64_t inputs_ = 0;
  std::uint64_t recognised_ = 0;
  std::uint64_t unknown_ = 0;
  std::uint64_t unreadable_ = 0;
  std::uint64_t mismatches_ = 0;
  std::uint64_t changes_ = 0;
  Pipeline pipeline_;  // last, so that its threads end first
};

// Null with a message when the output cannot be used.
std::unique_ptr<EarlierOutput> Read(const std::string& option, const std::string& file) {
  const auto refuse = [&](const std::string& why) {
    Complain(option + ": " + file + ": " + why);
    return nullptr;
  };
  // Others may have no end, or wait for a writer when they are opened.
  const platform::Status status = platform::StatusOf({nullptr, file}, true);
  if (status.error != 0) return refuse(platform::ErrorText(status.error));
  if (status.kind != platform::Kind::FILE) return refuse("must be a regular file");
  auto output = std::make_unique<EarlierOutput>(file);
  if (output->error() != 0) return refuse(platform::ErrorText(output->error()));
  if (!output->IsOutput()) return refuse("is no output of --jsonl");
  return output;
}

}  // namespace

int Run(const Options& options) {
  std::unique_ptr<EarlierOutput> since;
  std::unique_ptr<EarlierOutput> compare;
  if (options.since && !(since = Read("--since", *options.since))) return ExitStatus::USAGE;
  if (options.compare && !(compare = Read("--compare", *options.compare))) return ExitStatus::USAGE;
  const auto isAskedAlike = [&options](const EarlierOutput& output) {
    return output.asked().value_or(AskedBy(options)) == AskedBy(options);
  };
  if (since != nullptr &&
      (!isAskedAlike(*since) ||
       (!since->header().empty() && !since->header().starts_with(HeaderObject(options))))) {
    Complain("--since: " + *options.since + " was made in another way; everything is examined");
    since.reset();
  }
  if (compare != nullptr && !isAskedAlike(*compare)) {
    Complain("--compare: " + *options.compare +
             " was made with other --candidates or --requested; answers differ for that too");
  }
  return Runner(options, since.get(), compare.get()).Run();
}

}  // namespace typescout::cli
