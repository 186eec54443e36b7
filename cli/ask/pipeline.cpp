#include "cli/ask/pipeline.h"

#include <chrono>
#include <system_error>
#include <utility>

#include "cli/platform/signals.h"

namespace typescout::cli {
namespace {

// How far the threads run ahead of the slowest input.
constexpr std::size_t MOST_OUTCOMES = 1'024;

// How many inputs a thread reads before it goes back to work.
constexpr std::size_t MOST_INPUTS = 32;

}  // namespace

Pipeline::Pipeline(unsigned threads, Source source, Work work)
    : source_(std::move(source)), work_(std::move(work)) {
  const platform::WithoutInterrupts forThreads;
  const std::lock_guard<std::mutex> lock(mutex_);
  try {
    for (; working_ < threads; ++working_) threads_.emplace_back([this] { WorkUntilEnd(); });
  } catch (const std::system_error&) {
    // The system gives no more threads.
  }
}

Pipeline::~Pipeline() {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    isEnding_ = true;
  }
  hasInput_.notify_all();
  for (std::thread& thread : threads_) thread.join();
}

// Called with the lock, by one thread at a time. Reads an input for this thread and one for each
// that waits, since the next one may be long in coming; more when they come soon and other threads
// can take them.
void Pipeline::ReadSource(std::unique_lock<std::mutex>* lock) {
  isReading_ = true;
  Supply supply = Supply::INPUT;
  const auto isEnough = [&] {
    const bool isAlone = threads_.size() == 1;
    return inputs_.size() >= (supply == Supply::INPUT || isAlone ? idle_ + 1 : MOST_INPUTS);
  };
  while (!isAtEnd_ && !isEnding_ && !isEnough() && outcomes_.size() < MOST_OUTCOMES) {
    lock->unlock();
    Input input;
    supply = source_(&input);
    lock->lock();
    if (supply == Supply::END) {
      isAtEnd_ = true;
      break;
    }
    inputs_.push_back({taken_ + outcomes_.size(), std::move(input)});
    outcomes_.emplace_back();
    if (idle_ != 0) hasInput_.notify_one();
  }
  isReading_ = false;
  if (idle_ != 0) hasInput_.notify_all();
}

std::optional<Pipeline::Ticket> Pipeline::TakeInput() {
  std::unique_lock<std::mutex> lock(mutex_);
  for (;;) {
    if (isEnding_) return std::nullopt;
    if (inputs_.empty() && !isReading_) ReadSource(&lock);
    if (!inputs_.empty() && !isEnding_) {
      Ticket ticket = std::move(inputs_.front());
      inputs_.pop_front();
      return ticket;
    }
    if (isAtEnd_) return std::nullopt;
    // Another thread reads the source, or there are as many outcomes as there may be.
    ++idle_;
    hasInput_.wait(lock);
    --idle_;
  }
}

void Pipeline::Put(std::uint64_t ticket, OutcomePtr outcome) {
  bool mustTell = false;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    outcomes_[static_cast<std::size_t>(ticket - taken_)] = std::move(outcome);
    mustTell = (isWatched_ && ticket == taken_) ||
               (outcomes_.size() >= MOST_OUTCOMES / 2 && std::exchange(isResting_, false));
  }
  if (mustTell) hasOutcome_.notify_one();
}

void Pipeline::WorkUntilEnd() {
  std::exception_ptr failure;
  try {
    while (const std::optional<Ticket> ticket = TakeInput()) {
      Put(ticket->number, std::make_unique<const Outcome>(work_(ticket->input)));
    }
  } catch (...) {
    failure = std::current_exception();
  }
  const std::lock_guard<std::mutex> lock(mutex_);
  if (failure != nullptr) failure_ = failure;
  --working_;
  hasOutcome_.notify_one();
}

bool Pipeline::Take(std::vector<OutcomePtr>* outcomes) {
  // While outcomes keep coming they are fetched every few milliseconds; waking this thread for each
  // would cost more than the work.
  constexpr std::chrono::milliseconds BUSY(5);
  // A signal handler cannot notify a condition variable, so the flag is polled.
  constexpr std::chrono::milliseconds IDLE(50);
  if (threads_.empty()) {
    Input input;
    if (source_(&input) == Supply::END) return false;
    outcomes->push_back(std::make_unique<const Outcome>(work_(input)));
    return true;
  }
  std::unique_lock<std::mutex> lock(mutex_);
  const auto isReady = [this] { return !outcomes_.empty() && outcomes_.front() != nullptr; };
  if (isBusy_) {
    const auto isUrgent = [this] { return working_ == 0 || outcomes_.size() >= MOST_OUTCOMES / 2; };
    isResting_ = true;
    hasOutcome_.wait_for(lock, BUSY, isUrgent);
    isResting_ = false;
  } else {
    isWatched_ = true;
    hasOutcome_.wait_for(lock, IDLE, [&] { return working_ == 0 || isReady(); });
    isWatched_ = false;
  }
  if (failure_ != nullptr) std::rethrow_exception(failure_);
  const bool wasFull = outcomes_.size() >= MOST_OUTCOMES;
  isBusy_ = isReady();
  for (; isReady(); ++taken_) {
    outcomes->push_back(std::move(outcomes_.front()));
    outcomes_.pop_front();
  }
  if (wasFull) hasInput_.notify_all();
  // An interrupt does not wait for what may never come.
  if (isReading_ && outcomes_.empty() && platform::IsInterrupted()) return false;
  return working_ != 0 || !outcomes_.empty();
}

}  // namespace typescout::cli
