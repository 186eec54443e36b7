// Several threads that ask about files while others are listed.
#ifndef TYPESCOUT_PYTHON_POOL_H
#define TYPESCOUT_PYTHON_POOL_H

#include <sys/types.h>

#include <chrono>
#include <deque>
#include <memory>

#include "python/src/ask.h"

namespace typescout::python {

// Paths go in, outcomes come out in the same order. One thread calls. Workers touch nothing but the
// shared state, so that an object may go while a worker still waits for a slow file: that worker
// ends by itself afterwards. In a child of fork(), an object may only be destroyed.
class Pool {
 public:
  // Starts up to `threads` workers, at least one asked for. Fewer when the system gives no more;
  // throws std::system_error when it gives none.
  Pool(int threads, Question question);
  Pool(const Pool&) = delete;
  Pool& operator=(const Pool&) = delete;
  ~Pool();

  // `taken` is how long the path took to come. Where that is short, a worker that sleeps is woken
  // only when several paths are there or Wait() is called. True when there are outcomes to take.
  bool Push(Path path, std::chrono::steady_clock::duration taken);

  // Moves the outcomes at the front that are there to the end of `outcomes`. Does not wait.
  void Take(std::deque<Outcome>* outcomes);

  // Waits until the first outcome is there, at most that long. May wait another millisecond for
  // more of them, since it costs less to take several at once.
  void Wait(std::chrono::steady_clock::duration limit);

 private:
  struct Shared;
  std::shared_ptr<Shared> shared_;
  pid_t process_;
};

}  // namespace typescout::python

#endif  // TYPESCOUT_PYTHON_POOL_H
