// The samples: the smallest file that a detector accepts, and its near misses beside it. One table
// a family; every kind of test, the fuzz seeds and the benchmark are fed from them.
#ifndef TYPESCOUT_TESTS_SAMPLES_SAMPLE_H
#define TYPESCOUT_TESTS_SAMPLES_SAMPLE_H

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "core/probe_context.h"

namespace typescout::tests {

enum Verdict : bool { NO, YES };

struct Sample {
  std::string name;  // unique; says what is special about it
  Detector detector;
  std::string bytes;  // the whole file
  Verdict verdict;
  std::wstring path = L"sample";                     // the file's name
  FilterId requested = 0;                            // the filter that the caller means to use
  std::map<std::wstring, std::string> streams = {};  // not empty: a compound document with these
};

std::vector<Sample> RasterSamples();
std::vector<Sample> PostscriptSamples();
std::vector<Sample> VectorSamples();
std::vector<Sample> MediaSamples();
std::vector<Sample> NativeSamples();
std::vector<Sample> DocumentSamples();

// All of the above, in this order.
const std::vector<Sample>& AllSamples();

// A literal's bytes, zero bytes included, without the terminating one.
template <std::size_t N>
std::string Bytes(const char (&literal)[N]) {
  return std::string(literal, N - 1);
}

// `count` copies of a byte.
inline std::string Fill(std::size_t count, char byte = '\0') { return std::string(count, byte); }

// `text` followed by zero bytes up to `size` in all.
inline std::string PadTo(std::size_t size, std::string text) {
  text.resize(size);
  return text;
}

// `text` with `patch` written over it at `at`; grows with zero bytes where it must.
std::string Patch(std::string text, std::size_t at, const std::string& patch);

}  // namespace typescout::tests

#endif  // TYPESCOUT_TESTS_SAMPLES_SAMPLE_H
