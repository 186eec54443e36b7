// How the program ask_from ends when it does not end with an answer.
#ifndef TYPESCOUT_TESTS_POSIX_ASK_FROM_H
#define TYPESCOUT_TESTS_POSIX_ASK_FROM_H

namespace typescout::tests {

struct AskFrom {
  enum { FAILED = 70, THROWN = 71, IS_SECURE = 72 };
};

}  // namespace typescout::tests

#endif  // TYPESCOUT_TESTS_POSIX_ASK_FROM_H
