// Several threads that ask about files while others are listed.
#ifndef TYPESCOUT_PYTHON_POOL_H
#define TYPESCOUT_PYTHON_POOL_H

#include <memory>
#include <vector>

#include "python/src/ask.h"

namespace typescout::python {

// Paths go in by chunks, outcomes come out by chunks in the same order. One thread calls. Workers
// touch nothing but the shared state, so that an object may go while a worker still waits for a
// slow file: that worker ends by itself afterwards.
class Pool {
 public:
  // Starts up to `threads` workers, at least one asked for. Fewer when the system gives no more;
  // throws std::system_error when it gives none.
  Pool(int threads, Question question);
  Pool(const Pool&) = delete;
  Pool& operator=(const Pool&) = delete;
  ~Pool();

  void Push(std::vector<Path> chunk);

  // Waits for the next chunk's outcomes, at most that long. False when they are not there yet; the
  // caller may ask again. Only while fewer chunks were taken than pushed.
  bool Take(int milliseconds, std::vector<Outcome>* outcomes);

 private:
  struct Shared;
  std::shared_ptr<Shared> shared_;
};

}  // namespace typescout::python

#endif  // TYPESCOUT_PYTHON_POOL_H
