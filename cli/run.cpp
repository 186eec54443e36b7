#include "cli/run.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>

#include "cli/ask/examiner.h"
#include "cli/ask/workers.h"
#include "cli/input/input_source.h"
#include "cli/output/output.h"
#include "cli/output/progress.h"
#include "cli/output/writers.h"

namespace typescout::cli {
namespace {

// Inputs are handed to the threads in batches, so that handing them over costs next to nothing.
constexpr std::size_t BATCH_SIZE = 16;
// How far the walk runs ahead of the slowest input.
constexpr std::size_t BATCHES_PER_JOB = 8;

bool IsAllowed(const std::string& when, bool automatically) {
  return when == "always" || (when == "auto" && automatically);
}

bool MayColor(const Options& options) {
  using platform::Environment;
  const std::string terminal = Environment("TERM");
  const bool automatically = platform::IsTerminal(platform::Stream::OUTPUT) &&
                             Environment("NO_COLOR").empty() && terminal != "dumb";
  return IsAllowed(options.color, automatically);
}

bool MayShowProgress(const Options& options) {
  return IsAllowed(options.progress, platform::IsTerminal(platform::Stream::MESSAGES) &&
                                         !platform::IsTerminal(platform::Stream::OUTPUT));
}

class Runner {
 public:
  explicit Runner(const Options& options)
      : options_(options),
        examiner_(options),
        writer_(MakeWriter(options, isTerminal_, MayColor(options))),
        source_(options, [this] { BringOut(); }),
        progress_(MayShowProgress(options), source_.Total()) {}

  int Run() {
    platform::CatchInterrupts();
    output_.Append(writer_->Begin());
    Input input;
    while (source_.Next(&input)) Accept(std::move(input));
    NoteListError();
    if (workers_ != nullptr) GiveBatch();
    ExamineHere();
    while (workers_ != nullptr && workers_->pending() != 0 && TakeBatch()) {
    }
    output_.Append(writer_->End());
    output_.Flush();
    CheckOutput();
    progress_.Clear();
    if (options_.summary) Summarise();
    return Status();
  }

 private:
  void Accept(Input input) {
    NoteListError();
    batch_.push_back(std::move(input));
    if (++accepted_ == 2) {
      platform::HoldModules();
      platform::RaiseOpenFileLimit();
    }
    if (batch_.size() < BATCH_SIZE) return;
    if (options_.jobs == 1) return ExamineHere();
    if (workers_ == nullptr) {
      workers_ = std::make_unique<Workers>(options_.jobs,
                                           [this](const Input& each) { return Examine(each); });
    }
    GiveBatch();
    while (workers_->pending() > options_.jobs * BATCHES_PER_JOB && TakeBatch()) {
    }
    while (workers_->IsReady() && TakeBatch()) {
    }
  }

  // Everything so far, because nobody knows when there will be more.
  void BringOut() {
    if (workers_ != nullptr && !batch_.empty()) GiveBatch();
    ExamineHere();
    while (workers_ != nullptr && workers_->pending() != 0 && TakeBatch()) {
    }
    output_.Flush();
    CheckOutput();
  }

  void GiveBatch() { workers_->Give(std::exchange(batch_, {})); }

  void ExamineHere() {
    for (const Input& input : std::exchange(batch_, {})) {
      if (platform::IsInterrupted()) break;
      Write(Examine(input));
    }
    AfterBatch();
  }

  bool TakeBatch() {
    constexpr std::chrono::milliseconds PATIENCE(1000);
    const std::unique_ptr<Batch> batch = workers_->Take(PATIENCE);
    if (batch != nullptr) {
      for (const Outcome& outcome : batch->outcomes) Write(outcome);
      if (batch->outcomes.size() == batch->inputs.size()) {
        AfterBatch();
        return true;
      }
    }
    // Interrupted: what is behind the gap is not written.
    Finish();
  }

  // Called from several threads.
  Outcome Examine(const Input& input) const {
    const Record record = examiner_.Examine(input);
    Outcome outcome;
    outcome.count = CountedAs(record.state);
    outcome.isMismatch = record.isMismatch;
    if (!options_.mismatch || record.isMismatch) outcome.output = writer_->Format(record);
    if (!record.reason.empty() && !options_.quiet) {
      outcome.message = record.path + ": " + record.reason;
    }
    return outcome;
  }

  void Write(const Outcome& outcome) {
    ++counts_[static_cast<std::size_t>(outcome.count)];
    ++inputs_;
    mismatches_ += outcome.isMismatch;
    if (!outcome.output.empty()) {
      if (hasWritten_) output_.Append(writer_->Between());
      output_.Append(outcome.output);
      hasWritten_ = true;
    }
    if (!outcome.message.empty()) {
      progress_.Clear();
      // On a terminal they are read together.
      if (isTerminal_) output_.Flush();
      Complain(outcome.message);
    }
  }

  void AfterBatch() {
    if (isTerminal_) output_.Flush();
    CheckOutput();
    progress_.Update(inputs_);
    if (platform::IsInterrupted()) Finish();
  }

  void CheckOutput() {
    if (output_.error() == 0) return;
    progress_.Clear();
    if (platform::IsInterrupted()) platform::EndInterrupted();
    if (platform::IsClosedPipe(output_.error())) platform::EndClosedPipe();
    Complain("standard output: " + platform::ErrorText(output_.error()));
    platform::EndNow(ExitStatus::OUTPUT_FAILED);
  }

  // Threads that are still busy are left behind.
  [[noreturn]] void Finish() {
    output_.Append(writer_->End());
    output_.Flush();
    progress_.Clear();
    platform::EndInterrupted();
  }

  void NoteListError() {
    const std::string error = source_.TakeListError();
    if (error.empty()) return;
    isListUnreadable_ = true;
    progress_.Clear();
    Complain(error);
  }

  int Status() const {
    const bool isUnreadable = isListUnreadable_ || CountOf(Count::UNREADABLE) != 0;
    if (isUnreadable && !options_.failOnUnreadable) return ExitStatus::UNREADABLE;
    const bool isFound = isUnreadable || (options_.failOnUnknown && CountOf(Count::UNKNOWN) != 0) ||
                         (options_.failOnMismatch && mismatches_ != 0) ||
                         (options_.check != 0 && CountOf(Count::RECOGNISED) != inputs_);
    return isFound ? ExitStatus::FOUND : ExitStatus::DONE;
  }

  std::uint64_t CountOf(Count count) const { return counts_[static_cast<std::size_t>(count)]; }

  void Summarise() const {
    const auto number = [this](Count count) { return std::to_string(CountOf(count)); };
    Complain(std::to_string(inputs_) + " inputs: " + number(Count::RECOGNISED) + " recognised, " +
             number(Count::UNKNOWN) + " unknown, " + number(Count::UNREADABLE) + " unreadable, " +
             number(Count::SKIPPED) + " skipped");
  }

  const Options& options_;
  const bool isTerminal_ = platform::IsTerminal(platform::Stream::OUTPUT);
  Examiner examiner_;
  std::unique_ptr<Writer> writer_;
  InputSource source_;
  Output output_;
  Progress progress_;
  std::uint64_t accepted_ = 0;
  std::vector<Input> batch_;
  bool hasWritten_ = false;
  bool isListUnreadable_ = false;
  std::uint64_t inputs_ = 0;
  std::uint64_t mismatches_ = 0;
  std::array<std::uint64_t, 4> counts_ = {};
  std::unique_ptr<Workers> workers_;  // last, so that the threads end first
};

}  // namespace

int Run(const Options& options) { return Runner(options).Run(); }

}  // namespace typescout::cli
