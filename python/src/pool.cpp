#include "python/src/pool.h"

#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>
#include <utility>

namespace typescout::python {

struct Pool::Shared {
  struct Chunk {
    std::vector<Path> paths;
    std::vector<Outcome> outcomes;
    bool isStarted = false;
    bool isDone = false;
  };

  explicit Shared(Question q) : question(std::move(q)) {}

  const Question question;
  std::mutex mutex;
  std::condition_variable pushed;
  std::condition_variable done;
  std::deque<std::shared_ptr<Chunk>> chunks;  // in the order in which they are taken
  bool isClosed = false;

  // The first chunk that no thread has taken; waits for one. Null when the pool is closed.
  std::shared_ptr<Chunk> NextChunk() {
    std::unique_lock lock(mutex);
    while (!isClosed) {
      for (const std::shared_ptr<Chunk>& chunk : chunks) {
        if (chunk->isStarted) continue;
        chunk->isStarted = true;
        return chunk;
      }
      pushed.wait(lock);
    }
    return nullptr;
  }

  bool IsClosed() {
    const std::lock_guard lock(mutex);
    return isClosed;
  }

  void Work() {
    while (const std::shared_ptr<Chunk> chunk = NextChunk()) {
      for (std::size_t i = 0; i < chunk->paths.size() && !IsClosed(); ++i) {
        try {
          chunk->outcomes[i] = AskAboutFile(chunk->paths[i], question);
        } catch (const std::bad_alloc&) {
          chunk->outcomes[i].error = ENOMEM;
        }
      }
      const std::lock_guard lock(mutex);
      chunk->isDone = true;
      done.notify_one();
    }
  }
};

Pool::Pool(int threads, Question question)
    : shared_(std::make_shared<Shared>(std::move(question))) {
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
  const std::lock_guard lock(shared_->mutex);
  shared_->isClosed = true;
  shared_->pushed.notify_all();
}

void Pool::Push(std::vector<Path> paths) {
  auto chunk = std::make_shared<Shared::Chunk>();
  chunk->outcomes.resize(paths.size());
  chunk->paths = std::move(paths);
  const std::lock_guard lock(shared_->mutex);
  shared_->chunks.push_back(std::move(chunk));
  shared_->pushed.notify_one();
}

bool Pool::Take(int milliseconds, std::vector<Outcome>* outcomes) {
  std::unique_lock lock(shared_->mutex);
  const auto isReady = [this] { return shared_->chunks.front()->isDone; };
  if (!shared_->done.wait_for(lock, std::chrono::milliseconds(milliseconds), isReady)) return false;
  *outcomes = std::move(shared_->chunks.front()->outcomes);
  shared_->chunks.pop_front();
  return true;
}

}  // namespace typescout::python
