// The samples: the smallest files that each detector accepts, and their near misses. One function a
// family fills the table; every kind of test, the fuzz seeds and the benchmark use it.
#ifndef TYPESCOUT_TESTS_SAMPLES_SAMPLE_H
#define TYPESCOUT_TESTS_SAMPLES_SAMPLE_H

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "core/probe_context.h"

namespace typescout::tests {

// "..."s keeps the zero bytes of a literal.
using namespace std::string_literals;

// A file that a detector is asked about. A literal stands for all of its bytes, zero bytes too.
struct File {
  template <std::size_t N>
  File(const char (&literal)[N]) : bytes(literal, N - 1) {}
  File(std::string content) : bytes(std::move(content)) {}

  std::string bytes;  // the whole file
  std::wstring path = L"sample";
  FilterId requested = 0;                            // the filter that the caller means to use
  std::map<std::wstring, std::string> streams = {};  // not empty: a compound document with these
};

enum Verdict : bool { NO, YES };

struct Sample : File {
  std::string name;  // unique: the label that it was added with, and its bytes in brief
  FilterId filter;
  Detector detector;  // of the filter's row
  Verdict verdict;
};

class Table {
 public:
  // Adds files that the filter's row accepts, and files that it refuses. The label names them in
  // messages and in the golden table.
  void Add(const std::string& label, FilterId filter, const std::vector<File>& accepted, const std::vector<File>& refused);

  std::vector<Sample> samples;
};

void RasterSamples(Table& table);
void PostscriptSamples(Table& table);
void VectorSamples(Table& table);
void MediaSamples(Table& table);
void NativeSamples(Table& table);
void DocumentSamples(Table& table);

// All of the above, in this order.
const std::vector<Sample>& AllSamples();

// `count` copies of a byte.
inline std::string Fill(std::size_t count, char byte = '\0') { return std::string(count, byte); }

// `text` followed by zero bytes up to `size` in all; cut when it is longer.
std::string PadTo(std::size_t size, std::string text);

// `text` with `patch` written over it at `at`; grows with zero bytes where it must.
std::string Patch(std::string text, std::size_t at, const std::string& patch);

// The file by this name, and the file when the caller means to use this filter.
File Named(std::wstring path, File file);
File For(FilterId requested, File file);

// What a compound document begins with.
std::string CompoundHead();

// The file as a compound document with one stream, which begins with `head`.
File InStream(const std::wstring& stream, const std::string& content, File head = CompoundHead());

}  // namespace typescout::tests

#endif  // TYPESCOUT_TESTS_SAMPLES_SAMPLE_H
