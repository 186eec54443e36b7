// Asks a detector about a sample, through the in-memory host.
#ifndef TYPESCOUT_TESTS_SUPPORT_ASK_H
#define TYPESCOUT_TESTS_SUPPORT_ASK_H

#include <string_view>

#include "tests/samples/sample.h"

namespace typescout::tests {

// Empties the in-memory machine and lays the sample out on it: a file, and a compound document when
// it has streams.
void LayOut(const Sample& sample);

// Asks about the first `headLength` bytes of the sample, which is laid out already; at most
// HEAD_CAPACITY of them are the head. They stand in a heap block of their exact size, so that the
// address sanitizer sees a read beyond them.
std::int32_t AskAboutHead(Detector detector, const Sample& sample, std::size_t headLength);

// The usual way: lays the sample out and asks about all of it. Fails the running test when anything
// stays open.
std::int32_t Ask(Detector detector, const Sample& sample);

// The same about plain bytes.
std::int32_t Ask(Detector detector, const std::string& bytes);

}  // namespace typescout::tests

#endif  // TYPESCOUT_TESTS_SUPPORT_ASK_H
