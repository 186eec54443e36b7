// What the raising module raises, and the client expects.
#ifndef TYPESCOUT_TESTS_WINDOWS_RAISED_H
#define TYPESCOUT_TESTS_WINDOWS_RAISED_H

struct Raised {
  int value;
};
constexpr int THE_VALUE = 4711;
constexpr unsigned long THE_CODE = 0xE0001234;

#endif  // TYPESCOUT_TESTS_WINDOWS_RAISED_H
