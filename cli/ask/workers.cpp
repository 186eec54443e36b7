#include "cli/ask/workers.h"

namespace typescout::cli {

Workers::Workers(unsigned count, std::function<Outcome(const Input&)> work)
    : work_(std::move(work)) {
  for (unsigned i = 0; i < count; ++i) threads_.emplace_back([this] { Work(); });
}

Workers::~Workers() {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    isEnding_ = true;
  }
  hasWork_.notify_all();
  for (std::thread& thread : threads_) thread.join();
}

void Workers::Work() {
  platform::BlockInterruptsInThisThread();
  std::unique_lock<std::mutex> lock(mutex_);
  for (;;) {
    hasWork_.wait(lock, [this] { return isEnding_ || !waiting_.empty(); });
    if (isEnding_) return;
    Batch* batch = waiting_.front();
    waiting_.pop_front();
    lock.unlock();
    for (const Input& input : batch->inputs) {
      if (platform::IsInterrupted()) break;
      batch->outcomes.push_back(work_(input));
    }
    lock.lock();
    batch->isDone = true;
    hasDone_.notify_one();
  }
}

void Workers::Give(std::vector<Input> inputs) {
  auto batch = std::make_unique<Batch>();
  batch->inputs = std::move(inputs);
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    waiting_.push_back(batch.get());
    given_.push_back(std::move(batch));
  }
  hasWork_.notify_one();
}

bool Workers::IsReady() {
  const std::lock_guard<std::mutex> lock(mutex_);
  return !given_.empty() && given_.front()->isDone;
}

std::unique_ptr<Batch> Workers::Take(std::chrono::milliseconds patience) {
  // A signal handler can wake nobody, so the flag is looked at from time to time.
  constexpr std::chrono::milliseconds GLANCE(50);
  std::unique_lock<std::mutex> lock(mutex_);
  if (given_.empty()) return nullptr;
  const Batch& oldest = *given_.front();
  while (!hasDone_.wait_for(lock, GLANCE, [&oldest] { return oldest.isDone; })) {
    if (!platform::IsInterrupted()) continue;
    if (patience <= std::chrono::milliseconds::zero()) return nullptr;
    patience -= GLANCE;
  }
  std::unique_ptr<Batch> batch = std::move(given_.front());
  given_.pop_front();
  return batch;
}

}  // namespace typescout::cli
