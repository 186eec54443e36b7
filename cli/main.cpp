// typescout: says which import filter can read a file.
#include <cstddef>
#include <exception>
#include <string>
#include <vector>

#include "catalogue/filters.h"
#include "cli/ask/modules.h"
#include "cli/help.h"
#include "cli/options.h"
#include "cli/output/output.h"
#include "cli/output/writers.h"
#include "cli/platform/signals.h"
#include "cli/platform/streams.h"
#include "cli/platform/system.h"
#include "cli/run.h"
#include "typescout/typescout.h"

namespace {

using namespace typescout::cli;

int Print(const std::string& text) {
  Output output;
  output.Append(text);
  output.Flush();
  if (output.error() == 0) return ExitStatus::DONE;
  if (platform::IsClosedPipe(output.error())) platform::EndClosedPipe();
  Complain("standard output: " + platform::ErrorText(output.error()));
  return ExitStatus::OUTPUT_FAILED;
}

int Main(const std::vector<std::string>& arguments) {
  Options options;
  if (const std::string wrong = ParseOptions(arguments, &options); !wrong.empty()) {
    Complain(wrong);
    return ExitStatus::USAGE;
  }
  if (options.help) return Print(HelpText());
  if (options.version) return Print("typescout " TYPESCOUT_VERSION_STRING "\n");
  if (options.manual) return Print(ManualPage(TYPESCOUT_VERSION_STRING));
  if (options.completion) return Print(CompletionScript(*options.completion));
  if (options.listModules) return Print(ModuleList());
  if (options.listFilters) return Print(FilterList(options.shape));
  // The catalogue refers to the library's rows by index.
  const std::size_t known = typescout::catalogue::Filters().size();
  if (const int rows = GetNumTypeScoutProcs(); static_cast<std::size_t>(rows) != known) {
    Complain("the library has " + std::to_string(rows) + " filters and this program knows " +
             std::to_string(known) + ": they are of different versions");
    return ExitStatus::FAILED;
  }
  return Run(options);
}

}  // namespace

int main(int argc, char** argv) {
  platform::OccupyStandardStreams();
  try {
    return Main(platform::Arguments(argc, argv));
  } catch (const std::exception& error) {
    Complain(error.what());
    return ExitStatus::FAILED;
  }
}
