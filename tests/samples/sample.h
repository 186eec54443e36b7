// The samples: the smallest files that each detector accepts, and their near misses. Every kind of
// test, the fuzz seeds and the benchmark use them. They lie in the tables of this folder, one line
// each:
//
//     0607 FLIC                       the row's filter and a label for messages and the golden
//     table BASE = @4 "\x12\xAF" size 128   a name for bytes, valid in the rest of the table yes
//     BASE                        a file that the row accepts no  BASE size 127               a
//     file that it refuses
//
// Bytes are written from left to right: a text in quotation marks or a name, either with *COUNT
// behind it; @OFFSET or @end goes to that offset and later bytes overwrite what is there; "size N"
// cuts or fills with zero bytes. Behind the bytes may follow
//
//     stream NAME BYTES   the file is a compound document with this stream
//     path PATH           the file's path, otherwise "sample"
//     requested FILTER    the filter that the caller means to use
//     best FILTER         the filter that describes the file best, for the catalogue
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
  FilterId best = 0;                                 // what describes it best, if it says so
  std::map<std::wstring, std::string> streams = {};  // not empty: a compound document with these
};

enum Verdict : bool { NO, YES };

struct Sample : File {
  std::string name;  // its label and its line in the table
  FilterId filter;
  Detector detector;  // of the filter's row
  Verdict verdict;
};

// Those of all tables. Throws std::runtime_error with the line that cannot be read.
const std::vector<Sample>& AllSamples();

// `count` copies of a byte.
inline std::string Fill(std::size_t count, char byte = '\0') { return std::string(count, byte); }

// `text` followed by zero bytes up to `size` in all; cut when it is longer.
std::string PadTo(std::size_t size, std::string text);

// `text` with `patch` written over it at `at`; grows with zero bytes where it must.
std::string Patch(std::string text, std::size_t at, const std::string& patch);

}  // namespace typescout::tests

#endif  // TYPESCOUT_TESTS_SAMPLES_SAMPLE_H
