// The Python module `typescout._native`: what python/typescout/__init__.py is built on. A filter is
// a place in FILTERS there.
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <deque>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "catalogue/content.h"
#include "catalogue/filters.h"
#include "python/src/ask.h"
#include "python/src/pool.h"
#include "typescout/typescout.h"

namespace typescout::python {
namespace {

namespace py = pybind11;

[[noreturn]] void RaiseTypeError(const char* argument, const char* accepted, py::handle given) {
  PyErr_Format(PyExc_TypeError, "%s: %s is needed, not %s", argument, accepted,
               Py_TYPE(given.ptr())->tp_name);
  throw py::error_already_set();
}

// What the system and the library call the file: str, bytes or os.PathLike, with bytes that are not
// valid UTF-8 as Python's "surrogateescape" has them (PEP 383). Raises TypeError, which names the
// argument, ValueError for a NUL character, UnicodeEncodeError.
Path ToPath(py::handle path, const char* argument) {
  if (!py::isinstance<py::str>(path) && !py::isinstance<py::bytes>(path) &&
      !py::hasattr(path, "__fspath__")) {
    RaiseTypeError(argument, "a str, bytes or os.PathLike", path);
  }
  PyObject* encoded = nullptr;
  if (PyUnicode_FSConverter(path.ptr(), &encoded) == 0) throw py::error_already_set();
  const auto bytes = py::reinterpret_steal<py::bytes>(encoded);
  Path result;
  result.bytes = bytes;
  const auto text = py::reinterpret_steal<py::object>(PyUnicode_DecodeUTF8(
      result.bytes.data(), static_cast<Py_ssize_t>(result.bytes.size()), "surrogateescape"));
  if (!text) throw py::error_already_set();
  result.wide.resize(static_cast<std::size_t>(PyUnicode_GetLength(text.ptr())));
  if (PyUnicode_AsWideChar(text.ptr(), result.wide.data(),
                           static_cast<Py_ssize_t>(result.wide.size())) < 0) {
    throw py::error_already_set();
  }
  return result;
}

// The filters' places in FILTERS, where the drawing object, which has no row, comes last.
int PlaceOf(const catalogue::Filter& filter) {
  const int row = catalogue::RowOf(filter);
  return row < 0 ? static_cast<int>(catalogue::Filters().size()) : row;
}

// An OSError of the subclass that belongs to the errno, with `filename` set.
py::object MakeError(const Outcome& outcome, const py::object& filename) {
  const std::string reason =
      outcome.reason.empty() ? std::string(std::strerror(outcome.error)) : outcome.reason;
  const auto type = py::reinterpret_borrow<py::object>(PyExc_OSError);
  return filename.is_none() ? type(outcome.error, reason) : type(outcome.error, reason, filename);
}

// The same for a path that has no file: EINVAL, and the cause says why.
py::object MakeError(const py::error_already_set& cause, const py::object& path) {
  py::object error = MakeError({nullptr, nullptr, EINVAL, py::str(cause.value())}, path);
  PyException_SetCause(error.ptr(), cause.value().inc_ref().ptr());
  return error;
}

// The places of answer and best, None, or an exception object.
py::object ToPython(const Outcome& outcome, const py::object& filename) {
  if (outcome.error != 0) return MakeError(outcome, filename);
  if (outcome.answer == nullptr) return py::none();
  return py::make_tuple(PlaceOf(*outcome.answer), PlaceOf(*outcome.best));
}

py::object OrRaise(const Outcome& outcome, const py::object& filename) {
  py::object result = ToPython(outcome, filename);
  if (outcome.error == 0) return result;
  PyErr_SetObject(reinterpret_cast<PyObject*>(Py_TYPE(result.ptr())), result.ptr());
  throw py::error_already_set();
}

py::object Identify(const py::object& path, const Question& question) {
  const Path file = ToPath(path, "path");
  Outcome outcome;
  {
    const py::gil_scoped_release released;
    outcome = AskAboutFile(file, question);
  }
  return OrRaise(outcome, path);
}

// The bytes of an object with a contiguous buffer. Raises TypeError, BufferError.
class Bytes {
 public:
  Bytes(py::handle data, const char* argument) {
    if (PyObject_CheckBuffer(data.ptr()) == 0) {
      RaiseTypeError(argument, "bytes or another object with a buffer", data);
    }
    if (PyObject_GetBuffer(data.ptr(), &view_, PyBUF_C_CONTIGUOUS) != 0) {
      throw py::error_already_set();
    }
  }
  Bytes(const Bytes&) = delete;
  Bytes& operator=(const Bytes&) = delete;
  ~Bytes() { PyBuffer_Release(&view_); }

  std::string_view view() const {
    return {static_cast<const char*>(view_.buf), static_cast<std::size_t>(view_.len)};
  }

 private:
  Py_buffer view_;
};

py::object IdentifyBytes(const py::object& data, const py::object& name, const Question& question) {
  const Bytes bytes(data, "data");
  const std::string shown = name.is_none() ? std::string() : ToPath(name, "name").bytes;
  Outcome outcome;
  {
    const py::gil_scoped_release released;
    outcome = AskAboutContent(bytes.view(), shown, question);
  }
  return OrRaise(outcome, name);
}

bool ReadsBeyondHead(const py::object& head) {
  return catalogue::IsReadBeyondHead(Bytes(head, "head").view());
}

// The caller's iterator, the pool that asks about what comes from it, and the names for the
// outcomes.
class Many {
 public:
  Many(py::object paths, int threads, Question question)
      : pool_(threads, std::move(question)), paths_(std::move(paths)) {}

  // The next paths with their outcomes, in order; empty at the end. Outcomes that are there are
  // handed out before the iterator is asked again; what it raises comes after all outcomes. Lets
  // signals through.
  py::list Take() {
    if (getpid() != process_) {
      throw std::runtime_error("identify_many() was started in another process");
    }
    py::list results = Finished();
    Clock::time_point now = Clock::now();
    while (results.empty()) {
      const bool mayPull = paths_ && pending_.size() < AHEAD;
      if (mayPull && (pending_.empty() || now >= pullAt_)) {
        if (Pull(&now)) results = Finished();
      } else if (!pending_.empty()) {
        Wait(mayPull ? std::min(pullAt_ - now, TICK) : TICK);
        results = Finished();
        now = Clock::now();
      } else if (failure_) {
        throw py::error_already_set(*std::exchange(failure_, std::nullopt));
      } else {
        break;
      }
    }
    return results;
  }

 private:
  using Clock = std::chrono::steady_clock;

  struct Pending {
    py::object path;
    py::object error;  // null: the pool has the path
  };

  static constexpr std::size_t AHEAD = 512;
  static constexpr Clock::duration TICK = std::chrono::milliseconds(20);

  py::list Finished() {
    pool_.Take(&outcomes_);
    py::list results;
    while (!pending_.empty()) {
      const Pending& first = pending_.front();
      if (first.error) {
        results.append(py::make_tuple(first.path, first.error));
      } else if (!outcomes_.empty()) {
        results.append(py::make_tuple(first.path, ToPython(outcomes_.front(), first.path)));
        outcomes_.pop_front();
      } else {
        break;
      }
      pending_.pop_front();
    }
    return results;
  }

  // Takes one path from the iterator. Where paths come slowly, the next one is not asked for at
  // once: an answer that is nearly there would wait for it. The pause is as long as the path took,
  // so that it no more than doubles the time. `*now` goes on. True when something may be finished.
  bool Pull(Clock::time_point* now) {
    constexpr Clock::duration SLOW = std::chrono::milliseconds(1);
    const py::object path = Next();
    if (!path) return true;
    const Clock::time_point started = std::exchange(*now, Clock::now());
    const Clock::duration taken = std::exchange(isFirst_, false) ? TICK : *now - started;
    pullAt_ = taken < SLOW ? *now : *now + taken;
    try {
      const bool isReady = pool_.Push(ToPath(path, "paths"), taken);
      pending_.push_back({path, {}});
      return isReady;
    } catch (const py::error_already_set& error) {
      if (!error.matches(PyExc_Exception)) throw;
      pending_.push_back({path, MakeError(error, path)});
      return true;
    }
  }

  // Null when the iterator is at its end or has raised.
  py::object Next() {
    auto path = py::reinterpret_steal<py::object>(PyIter_Next(paths_.ptr()));
    if (path) return path;
    if (PyErr_Occurred() != nullptr) {
      failure_.emplace();
      if (!failure_->matches(PyExc_Exception)) throw py::error_already_set(*failure_);
    }
    paths_ = {};
    return {};
  }

  void Wait(Clock::duration limit) {
    {
      const py::gil_scoped_release released;
      pool_.Wait(limit);
    }
    if (PyErr_CheckSignals() != 0) throw py::error_already_set();
  }

  Pool pool_;
  std::deque<Outcome> outcomes_;  // from the pool
  std::deque<Pending> pending_;   // the paths that were not handed out
  py::object paths_;              // null when there are no more
  std::optional<py::error_already_set> failure_;
  bool isFirst_ = true;
  Clock::time_point pullAt_;
  pid_t process_ = getpid();
};

py::list Filters() {
  py::list filters;
  const auto add = [&filters](const catalogue::Filter& f) {
    filters.append(py::make_tuple(f.id, f.label, f.name, f.mime, f.extensions,
                                  catalogue::Family(f.id),
                                  f.evidence == catalogue::Evidence::NEVER));
  };
  for (const catalogue::Filter& filter : catalogue::Filters()) add(filter);
  constexpr int DRAWING_OBJECT = 0x0706;
  add(*catalogue::FindFilter(DRAWING_OBJECT));
  return filters;
}

}  // namespace

PYBIND11_MODULE(_native, module) {
  module.attr("VERSION") = TYPESCOUT_VERSION_STRING;
  module.attr("HEAD_SIZE") = catalogue::HEAD_SIZE;
  module.def("filters", Filters);
  module.def("reads_beyond_head", ReadsBeyondHead);
  py::class_<Question>(module, "Question").def(py::init([](std::vector<int> rows, int requested) {
    return Question{std::move(rows), requested};
  }));
  module.def("identify", Identify);
  module.def("identify_bytes", IdentifyBytes);
  py::class_<Many>(module, "Many")
      .def(py::init<py::object, int, Question>())
      .def("take", &Many::Take);
}

}  // namespace typescout::python
