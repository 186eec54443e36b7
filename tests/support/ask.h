// Asks a detector about a sample, through the in-memory host.
#ifndef TYPESCOUT_TESTS_SUPPORT_ASK_H
#define TYPESCOUT_TESTS_SUPPORT_ASK_H

#include "tests/samples/sample.h"

namespace typescout::tests {

// Empties the in-memory machine and puts the file on it: a compound document too when it has
// streams.
void LayOut(const File& file);

// Asks about the first `headLength` bytes of the file, which LayOut has put there; at most
// HEAD_CAPACITY of them are the head. They stand in a heap block of their exact size, so that the
// address sanitizer sees a read beyond them.
std::int32_t AskAboutHead(Detector detector, const File& file, std::size_t headLength);

// Lays the file out and asks about all of it. Fails the running test when anything stays open.
std::int32_t Ask(Detector detector, const File& file);

}  // namespace typescout::tests

#endif  // TYPESCOUT_TESTS_SUPPORT_ASK_H
