// Threads that work on batches; the batches come back in the order in which they were given.
#ifndef TYPESCOUT_CLI_ASK_WORKERS_H
#define TYPESCOUT_CLI_ASK_WORKERS_H

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "cli/ask/examiner.h"

namespace typescout::cli {

// What becomes of one input.
struct Outcome {
  std::string output;   // its record, ready to be written; may be empty
  std::string message;  // for standard error; may be empty
  Count count = Count::UNKNOWN;
  bool isMismatch = false;
};

struct Batch {
  std::vector<Input> inputs;
  // One for each input; fewer when the run was interrupted.
  std::vector<Outcome> outcomes;
  bool isDone = false;
};

class Workers {
 public:
  // `work` is called from `count` threads at once.
  Workers(unsigned count, std::function<Outcome(const Input&)> work);
  // Ends the threads once each is done with its input.
  ~Workers();
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;

  void Give(std::vector<Input> inputs);

  // How many batches were given and not taken.
  std::size_t pending() const { return given_.size(); }

  // The oldest batch, waiting for it if need be. Null when there is none, and when `patience` after
  // an interrupt it is still not done.
  std::unique_ptr<Batch> Take(std::chrono::milliseconds patience);

  // Whether Take() would not wait.
  bool IsReady();

 private:
  void Work();

  std::function<Outcome(const Input&)> work_;
  std::mutex mutex_;
  std::condition_variable hasWork_;
  std::condition_variable hasDone_;
  std::deque<std::unique_ptr<Batch>> given_;  // the giving thread's, but for the batches' contents
  std::deque<Batch*> waiting_;
  bool isEnding_ = false;
  std::vector<std::thread> threads_;
};

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_ASK_WORKERS_H
