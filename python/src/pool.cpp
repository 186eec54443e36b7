#include "python/src/pool.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>
#include <utility>

namespace typescout::python {

struct Pool::Shared {
  struct Item {
    Path path;
    Outcome outcome;
    bool isDone = false;
  };

  explicit Shared(Question q) : question(std::move(q)) {}

  const Question question;
  std::mutex mutex;
  std::condition_variable pushed;
  std::condition_variable done;
  std::deque<Item> items;    // in the order in which they are taken; a worker keeps a reference
  std::size_t started = 0;   // so many of them were given to a worker
  std::size_t sleeping = 0;  // workers that wait for `pushed`
  const Item* awaited = nullptr;  // the caller waits for `done` until this one is done
  bool isClosed = false;

  void Work() {
    std::unique_lock lock(mutex);
    while (!isClosed) {
      if (started == items.size()) {
        ++sleeping;
        pushed.wait(lock);
        --sleeping;
        continue;
      }
      Item& item = items[started++];
      lock.unlock();
      try {
        item.outcome = AskAboutFile(item.path, question);
      } catch (const std::bad_alloc&) {
        item.outcome.error = ENOMEM;
      }
      lock.lock();
      item.isDone = true;
      if (&item == awaited) done.notify_one();
    }
  }

  void WaitFor(const Item& item, std::chrono::steady_clock::duration limit,
               std::unique_lock<std::mutex>* lock) {
    awaited = &item;
    done.wait_for(*lock, limit, [&item] { return item.isDone; });
    awaited = nullptr;
  }
};

Pool::Pool(int threads, Question question)
    : shared_(std::make_shared<Shared>(std::move(question))), process_(getpid()) {
  for (int i = 0; i < threads; ++i) {
    try {
      std::thread([shared = shared_] { shared->Work(); }).detach();
    } catch (const std::system_error&) {
      if (i == 0) throw;
      break;
    }
  }
}

Pool::~Pool() {
  if (getpid() != process_) {
    // A child of fork() has a copy of the mutex and the conditions, but not of the workers that may
    // have held or waited for them: to lock, to notify or to destroy would wait for good. So the
    // shared state is never freed here.
    new std::shared_ptr<Shared>(std::move(shared_));
    return;
  }
  const std::lock_guard lock(shared_->mutex);
  shared_->isClosed = true;
  shared_->pushed.notify_all();
}

bool Pool::Push(Path path, std::chrono::steady_clock::duration taken) {
  // To wake a worker costs about as much as a file.
  constexpr std::size_t SEVERAL = 8;
  constexpr std::chrono::steady_clock::duration SHORT = std::chrono::microseconds(50);
  std::unique_lock lock(shared_->mutex);
  shared_->items.push_back({std::move(path), {}, false});
  const std::size_t unstarted = shared_->items.size() - shared_->started;
  const bool isReady = shared_->items.front().isDone;
  if (shared_->sleeping == 0 || (unstarted < SEVERAL && taken < SHORT)) return isReady;
  lock.unlock();
  shared_->pushed.notify_one();
  return isReady;
}

void Pool::Take(std::deque<Outcome>* outcomes) {
  const std::lock_guard lock(shared_->mutex);
  while (!shared_->items.empty() && shared_->items.front().isDone) {
    outcomes->push_back(std::move(shared_->items.front().outcome));
    shared_->items.pop_front();
    --shared_->started;
  }
}

void Pool::Wait(std::chrono::steady_clock::duration limit) {
  constexpr std::size_t MOST = 32;
  constexpr std::chrono::steady_clock::duration LONGER = std::chrono::milliseconds(1);
  std::unique_lock lock(shared_->mutex);
  const std::deque<Shared::Item>& items = shared_->items;
  if (items.empty()) return;
  const std::size_t unstarted = items.size() - shared_->started;
  for (std::size_t i = 0; i < std::min(unstarted, shared_->sleeping); ++i) {
    shared_->pushed.notify_one();
  }
  shared_->WaitFor(items[std::min(items.size(), MOST) - 1], std::min(limit, LONGER), &lock);
  if (!items.front().isDone) shared_->WaitFor(items.front(), limit, &lock);
}

}  // namespace typescout::python
