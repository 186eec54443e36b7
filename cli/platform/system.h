// The process and its surroundings.
#ifndef TYPESCOUT_CLI_PLATFORM_SYSTEM_H
#define TYPESCOUT_CLI_PLATFORM_SYSTEM_H

#include <string>
#include <vector>

namespace typescout::cli::platform {

// The system's words for one of its error numbers. Throughout the platform's functions an error is
// such a number, 0 for none, and a path is bytes: as they are on POSIX, UTF-8 on Windows.
std::string ErrorText(int error);

// What main() got, without the program's name.
std::vector<std::string> Arguments(int argc, char** argv);

// Empty when the variable is not set.
std::string Environment(const char* name);

// Raises the limit on open files as far as the system allows, 65,536 at most.
void RaiseOpenFileLimit();

}  // namespace typescout::cli::platform

#endif  // TYPESCOUT_CLI_PLATFORM_SYSTEM_H
