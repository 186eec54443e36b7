// typescout: says which import filter can read a file.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "cli/filter_table.h"
#include "cli/names.h"
#include "typescout/typescout.h"

namespace {

using namespace typescout::cli;

constexpr int UNREADABLE = 2;
constexpr int USAGE = 64;

// Why the file cannot be read, or 0 when it can.
int ReasonUnreadable(const char* path) {
  struct stat status = {};
  if (stat(path, &status) != 0) return errno;
  if (S_ISDIR(status.st_mode)) return EISDIR;
  if (!S_ISREG(status.st_mode)) return 0;
  const int file = open(path, O_RDONLY | O_CLOEXEC);
  if (file < 0) return errno;
  close(file);
  return 0;
}

bool Report(const char* path) {
  const int id = TypeScoutFile(ToWide(path).c_str());
  if (id == 0) {
    if (const int reason = ReasonUnreadable(path); reason != 0) {
      std::fprintf(stderr, "typescout: %s: %s\n", path, std::strerror(reason));
      return false;
    }
  }
  const Filter* filter = FindFilter(id);
  const std::string name(filter == nullptr ? "unknown" : filter->name);
  std::printf("%s: %s %s\n", path, FormatId(id).c_str(), name.c_str());
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: typescout FILE...\n");
    return USAGE;
  }
  int status = 0;
  for (int i = 1; i < argc; ++i) {
    if (!Report(argv[i])) status = UNREADABLE;
  }
  return status;
}
