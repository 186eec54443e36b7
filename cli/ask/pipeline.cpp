#include "cli/ask/pipeline.h"

#include <chrono>
#include <system_error>

#include "cli/platform/signals.h"

namespace typescout::cli {
namespace {

// How far the threads run ahead of the slowest input.
constexpr std::size_t MOST_OUTCOMES = 1'024;

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
  hasRoom_.notify_all();
  for (std::thread& thread : threads_) thread.join();
}

std::optional<std::uint64_t> Pipeline::TakeInput(Input* input) {
  const std::lock_guard<std::mutex> sourceLock(sourceMutex_);
  std::unique_lock<std::mutex> lock(mutex_);
  hasRoom_.wait(lock, [this] { return isEnding_ || outcomes_.size() < MOST_OUTCOMES; });
  if (isEnding_ || isAtEnd_) return std::nullopt;
  outcomes_.emplace_back();
  const std::uint64_t ticket = taken_ + outcomes_.size() - 1;
  lock.unlock();
  const bool hasInput = source_(input);
  if (hasInput) return ticket;
  lock.lock();
  isAtEnd_ = true;
  outcomes_.pop_back();
  return std::nullopt;
}

void Pipeline::Put(std::uint64_t ticket, Outcome outcome) {
  bool mustTell = false;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    outcomes_[ticket - taken_] = std::move(outcome);
    mustTell = (isWatched_ && ticket == taken_) || outcomes_.size() == MOST_OUTCOMES / 2;
  }
  if (mustTell) hasOutcome_.notify_one();
}

void Pipeline::WorkUntilEnd() {
  std::exception_ptr failure;
  try {
    Input input;
    while (const std::optional<std::uint64_t> ticket = TakeInput(&input)) {
      Put(*ticket, work_(input));
    }
  } catch (...) {
    failure = std::current_exception();
  }
  const std::lock_guard<std::mutex> lock(mutex_);
  if (failure != nullptr) failure_ = failure;
  --working_;
  hasOutcome_.notify_one();
}

bool Pipeline::Take(std::vector<Outcome>* outcomes) {
  // While outcomes keep coming they are fetched every few milliseconds; waking this thread for each
  // would cost more than the work.
  constexpr std::chrono::milliseconds BUSY(5);
  // A signal handler cannot notify a condition variable, so the flag is polled.
  constexpr std::chrono::milliseconds IDLE(50);
  if (threads_.empty()) {
    Input input;
    if (!source_(&input)) return false;
    outcomes->push_back(work_(input));
    return true;
  }
  std::unique_lock<std::mutex> lock(mutex_);
  const auto isReady = [this] { return !outcomes_.empty() && outcomes_.front(); };
  if (isBusy_) {
    const auto isUrgent = [this] { return working_ == 0 || outcomes_.size() >= MOST_OUTCOMES / 2; };
    hasOutcome_.wait_for(lock, BUSY, isUrgent);
  } else {
    isWatched_ = true;
    hasOutcome_.wait_for(lock, IDLE, [&] { return working_ == 0 || isReady(); });
    isWatched_ = false;
  }
  if (failure_ != nullptr) std::rethrow_exception(failure_);
  const bool wasFull = outcomes_.size() >= MOST_OUTCOMES;
  isBusy_ = isReady();
  for (; isReady(); ++taken_) {
    outcomes->push_back(std::move(*outcomes_.front()));
    outcomes_.pop_front();
  }
  if (wasFull) hasRoom_.notify_one();
  return working_ != 0 || !outcomes_.empty();
}

}  // namespace typescout::cli
