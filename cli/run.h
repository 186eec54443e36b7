// A run: every input examined, its record written, in the order of the inputs.
#ifndef TYPESCOUT_CLI_RUN_H
#define TYPESCOUT_CLI_RUN_H

#include "cli/options.h"

namespace typescout::cli {

// Returns the exit status. Does not return when the run is interrupted or the reader of its output
// is gone.
int Run(const Options& options);

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_RUN_H
