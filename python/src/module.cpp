// The Python module `typescout._native`: what python/typescout/__init__.py is built on. A filter is
// a place in FILTERS there.
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>
#include <unistd.h>

#include <cstring>
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

// What the system and the library call the file: str, bytes or os.PathLike, with bytes that are not
// valid UTF-8 as Python's "surrogateescape" has them (PEP 383). Raises TypeError, ValueError for a
// NUL character, UnicodeEncodeError.
Path ToPath(py::handle path) {
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
  const Path file = ToPath(path);
  Outcome outcome;
  {
    const py::gil_scoped_release released;
    outcome = AskAboutFile(file, question);
  }
  return OrRaise(outcome, path);
}

py::object IdentifyBytes(const py::buffer& data, const py::object& name, const Question& question) {
  Py_buffer view;
  if (PyObject_GetBuffer(data.ptr(), &view, PyBUF_C_CONTIGUOUS) != 0) {
    throw py::error_already_set();
  }
  struct Owner {
    Py_buffer* view;
    ~Owner() { PyBuffer_Release(view); }
  } const owner{&view};
  const std::string shown = name.is_none() ? std::string() : ToPath(name).bytes;
  Outcome outcome;
  {
    const py::gil_scoped_release released;
    outcome = AskAboutContent(
        {static_cast<const char*>(view.buf), static_cast<std::size_t>(view.len)}, shown, question);
  }
  return OrRaise(outcome, name);
}

// A pool and the names that the caller gave, for the exceptions.
class Many {
 public:
  Many(int threads, Question question) : pool_(threads, std::move(question)) {}

  void Push(const py::list& paths) {
    CheckProcess();
    std::vector<Path> chunk;
    chunk.reserve(paths.size());
    for (const py::handle path : paths) chunk.push_back(ToPath(path));
    pool_.Push(std::move(chunk));
    pushed_.append(paths);
  }

  // The outcomes of the first chunk that was not taken yet. Waits for it, and lets signals through.
  py::list Take() {
    constexpr int MILLISECONDS = 20;
    CheckProcess();
    std::vector<Outcome> outcomes;
    for (bool isDone = false; !isDone;) {
      {
        const py::gil_scoped_release released;
        isDone = pool_.Take(MILLISECONDS, &outcomes);
      }
      if (PyErr_CheckSignals() != 0) throw py::error_already_set();
    }
    const py::list paths = pushed_.attr("pop")(0);
    py::list results;
    for (std::size_t i = 0; i < outcomes.size(); ++i) {
      results.append(py::make_tuple(paths[i], ToPython(outcomes[i], paths[i])));
    }
    return results;
  }

 private:
  // A child of fork() has the object, but not its threads.
  void CheckProcess() const {
    if (getpid() != process_) {
      throw std::runtime_error("identify_many() was started in another process");
    }
  }

  Pool pool_;
  py::list pushed_;
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
  module.def("reads_beyond_head", [](const py::bytes& head) {
    return catalogue::IsReadBeyondHead(std::string_view(head));
  });
  py::class_<Question>(module, "Question").def(py::init([](std::vector<int> rows, int requested) {
    return Question{std::move(rows), requested};
  }));
  module.def("identify", Identify);
  module.def("identify_bytes", IdentifyBytes);
  py::class_<Many>(module, "Many")
      .def(py::init<int, Question>())
      .def("push", &Many::Push)
      .def("take", &Many::Take);
}

}  // namespace typescout::python
