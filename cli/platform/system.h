// The process and its surroundings.
#ifndef TYPESCOUT_CLI_PLATFORM_SYSTEM_H
#define TYPESCOUT_CLI_PLATFORM_SYSTEM_H

#include <cstddef>
#include <string>
#include <vector>

namespace typescout::cli::platform {

// The system's words for one of its error numbers. Throughout the platform's functions an error is
// such a number, 0 for none, and a path is bytes: as they are on POSIX, UTF-8 on Windows.
std::string ErrorText(int error);

// What main() got, without the program's name.
std::vector<std::string> Arguments(int argc, char** argv);

// A path that another program wrote into a list. On Windows such programs write in the console's
// encoding, unless it is UTF-8 already.
std::string ListedPath(std::string bytes);

// Empty when the variable is not set.
std::string Environment(const char* name);

// Raises the limit on open files as far as the system allows, 65,536 at most. Returns what it is
// then; where there is no limit, the largest number.
std::size_t RaiseOpenFileLimit();

}  // namespace typescout::cli::platform

#endif  // TYPESCOUT_CLI_PLATFORM_SYSTEM_H
