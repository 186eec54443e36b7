// Threads that take inputs from a source and work on them, one at a time each; the outcomes come
// back in the order of the inputs.
#ifndef TYPESCOUT_CLI_ASK_PIPELINE_H
#define TYPESCOUT_CLI_ASK_PIPELINE_H

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "cli/ask/record.h"
#include "cli/input/input.h"

namespace typescout::cli {

// What becomes of one input.
struct Outcome {
  Input::Type type = Input::Type::PATH;
  Record record;
  bool isShown = false;
  std::string output;   // the record, ready to be written; may be empty
  std::string message;  // for standard error; may be empty
};

class Pipeline {
 public:
  enum class Supply {
    INPUT,
    INPUT_AND_MORE,  // the next one is there soon
    END,             // no input
  };
  using Source = std::function<Supply(Input*)>;
  using Work = std::function<Outcome(const Input&)>;
  using OutcomePtr = std::unique_ptr<const Outcome>;

  // `source` is called by one thread at a time, `work` by up to `threads` at once. Where the system
  // gives fewer threads, fewer work; where it gives none, Take() does.
  Pipeline(unsigned threads, Source source, Work work);
  // Ends the threads once each is done with its input.
  ~Pipeline();
  Pipeline(const Pipeline&) = delete;
  Pipeline& operator=(const Pipeline&) = delete;

  // Waits for the next outcomes, at most for a moment, and appends those that are there, which may
  // be none. False when there are no more after them. Throws what a thread has thrown.
  bool Take(std::vector<OutcomePtr>* outcomes);

 private:
  struct Ticket {
    std::uint64_t number;
    Input input;
  };

  void WorkUntilEnd();
  std::optional<Ticket> TakeInput();
  void ReadSource(std::unique_lock<std::mutex>* lock);
  void Put(std::uint64_t ticket, OutcomePtr outcome);

  Source source_;
  Work work_;

  std::mutex mutex_;  // for all that follows
  std::condition_variable hasOutcome_;
  std::condition_variable hasInput_;
  std::deque<Ticket> inputs_;        // read from the source, and not worked on yet
  unsigned idle_ = 0;                // threads that wait for an input
  bool isReading_ = false;           // a thread is in ReadSource()
  std::deque<OutcomePtr> outcomes_;  // null where the work is not done
  std::uint64_t taken_ = 0;          // the ticket of the first of them
  unsigned working_ = 0;             // threads
  bool isAtEnd_ = false;             // the source
  bool isWatched_ = false;           // Take() sleeps until it is notified of an outcome
  bool isResting_ = false;           // Take() sleeps until there are many of them
  bool isBusy_ = false;              // the last Take() found something
  bool isEnding_ = false;
  std::exception_ptr failure_;
  std::vector<std::thread> threads_;
};

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_ASK_PIPELINE_H
