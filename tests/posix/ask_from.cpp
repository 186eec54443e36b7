// ask_from LIBRARY FOLDER PATH FILTER: loads the typescout module by the name LIBRARY, makes FOLDER
// the current folder, asks about one filter and ends with the answer. Ends with THROWN when a
// module threw an exception of its own class, whose functions could still be called; with IS_SECURE
// in place of an answer when LIBRARY is "-" and the program is setuid.
#include <dlfcn.h>
#include <sys/auxv.h>
#include <unistd.h>

#include <cstdlib>
#include <exception>
#include <string>
#include <string_view>

#include "tests/posix/ask_from.h"
#include "tests/support/temp_folder.h"

int main(int argc, char** argv) {
  using typescout::tests::AskFrom;
  if (argc != 5) return AskFrom::FAILED;
  if (std::string_view(argv[1]) == "-") {
    return getauxval(AT_SECURE) != 0 ? AskFrom::IS_SECURE : AskFrom::FAILED;
  }
  void* const library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr || chdir(argv[2]) != 0) return AskFrom::FAILED;
  const auto checkOneFilter = reinterpret_cast<int (*)(const wchar_t*, int, int)>(
      dlsym(library, "_Z14CheckOneFilterPKwii"));
  if (checkOneFilter == nullptr) return AskFrom::FAILED;
  try {
    return checkOneFilter(typescout::tests::Wide(argv[3]).c_str(), std::atoi(argv[4]), 0);
  } catch (const std::exception& error) {
    return error.what() == std::string_view("an error of the module's own class") ? AskFrom::THROWN
                                                                                  : AskFrom::FAILED;
  }
}
