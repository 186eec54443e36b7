// Removes temporary files when the program ends.
#ifndef TYPESCOUT_CLI_PLATFORM_TEMPORARY_FILE_H
#define TYPESCOUT_CLI_PLATFORM_TEMPORARY_FILE_H

namespace typescout::cli::platform {

// Removes the temporary file that has a name at the moment, if any. There is one at most: standard
// input is taken once.
void RemoveTemporaryFile();

}  // namespace typescout::cli::platform

#endif  // TYPESCOUT_CLI_PLATFORM_TEMPORARY_FILE_H
