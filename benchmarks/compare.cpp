// compare LIST: over the files named in LIST (one a line), what a file costs in microseconds:
//   floor      open, fstat, read of up to 50,000 bytes, close
//   asked      the looks at the file that its rows ask for, and nothing else: what TypeScoutFile
//              would cost if it took no time of its own
//   typescout  TypeScoutFile
//   libmagic   magic_file, its database loaded once
// They take turns over the whole list, several rounds; each file's fastest round counts, so
// that what else the machine is doing does not. Prints one line of JSON.
#include <fcntl.h>
#include <magic.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "typescout/typescout.h"

namespace {

constexpr int ROUNDS = 5;
constexpr std::size_t HEAD = 50'000;
constexpr int ALL_TEXT_ROWS = 5;

struct File {
  std::string path;
  std::wstring wide;
  int textRows;  // how many of the rows for plain text are asked before one says yes
};

// They stand next to each other, behind nearly all others.
int TextRowsAsked(int answer) {
  switch (answer) {
    case 0x0903:
      return 1;
    case 0x0901:
      return 2;
    case 0:
      return ALL_TEXT_ROWS;
    default:
      return 0;
  }
}

// Reads the first `size` bytes.
void Look(const File& file, char* buffer, std::size_t size = HEAD) {
  const int descriptor = open(file.path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) return;
  struct stat status;
  if (fstat(descriptor, &status) == 0 && read(descriptor, buffer, size) < 0) buffer[0] = 0;
  close(descriptor);
}

void LookAsAsked(const File& file, char* buffer) {
  Look(file, buffer);
  for (int i = 0; i < 2; ++i) Look(file, buffer, 8);  // whether it is a compound document, twice
  if (file.textRows > 0 && access("/usr/lib/DCRaw.so", F_OK) == 0) buffer[0] = 0;
  for (int i = 0; i < file.textRows; ++i) Look(file, buffer, 5'000);
}

// Runs `look` over all files and keeps each file's fastest time in microseconds.
template <typename Look>
void Round(const std::vector<File>& files, std::vector<double>* fastest, Look look) {
  for (std::size_t i = 0; i < files.size(); ++i) {
    const auto start = std::chrono::steady_clock::now();
    look(files[i]);
    const std::chrono::duration<double, std::micro> took = std::chrono::steady_clock::now() - start;
    (*fastest)[i] = std::min((*fastest)[i], took.count());
  }
}

void Print(const char* name, std::vector<double> times, const char* end) {
  double sum = 0;
  for (const double time : times) sum += time;
  std::sort(times.begin(), times.end());
  const auto at = [&times](double part) {
    return times[static_cast<std::size_t>(part * static_cast<double>(times.size() - 1))];
  };
  std::printf(
      "\"%s\": {\"mean\": %.3f, \"median\": %.3f, \"p99\": %.3f, \"max\": %.3f, \"percentiles\": [",
      name, sum / static_cast<double>(times.size()), at(0.5), at(0.99), at(1));
  for (int i = 0; i <= 100; ++i) std::printf("%s%.3f", i == 0 ? "" : ", ", at(i / 100.0));
  std::printf("]}%s", end);
}

// The files that were asked about `atLeast` to `atMost` text rows: how many, and the mean of each
// way's times.
void PrintGroup(const char* name, const std::vector<File>& files, int atLeast, int atMost,
                const std::vector<std::pair<const char*, const std::vector<double>*>>& ways,
                const char* end) {
  const auto isInGroup = [=](const File& file) {
    return file.textRows >= atLeast && file.textRows <= atMost;
  };
  const auto count = std::count_if(files.begin(), files.end(), isInGroup);
  std::printf("\"%s\": {\"files\": %td", name, count);
  for (const auto& [way, times] : ways) {
    double sum = 0;
    for (std::size_t i = 0; i < files.size(); ++i) sum += isInGroup(files[i]) ? (*times)[i] : 0;
    std::printf(", \"%s\": %.3f", way,
                sum / static_cast<double>(std::max<std::ptrdiff_t>(count, 1)));
  }
  std::printf("}%s", end);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: compare LIST\n");
    return 64;
  }
  std::vector<File> files;
  std::ifstream list(argv[1]);
  for (std::string line; std::getline(list, line);) {
    const bool isAscii = std::all_of(line.begin(), line.end(), [](char c) { return c > 0; });
    if (!isAscii) continue;
    const std::wstring wide(line.begin(), line.end());
    files.push_back({line, wide, TextRowsAsked(TypeScoutFile(wide.c_str()))});
  }
  const std::unique_ptr<magic_set, decltype(&magic_close)> magic(magic_open(MAGIC_MIME_TYPE),
                                                                 magic_close);
  if (files.empty() || magic == nullptr || magic_load(magic.get(), nullptr) != 0) {
    std::fprintf(stderr, "compare: no files, or no database of libmagic\n");
    return 1;
  }
  const std::vector<double> never(files.size(), 1e12);
  std::vector<double> floor = never;
  std::vector<double> asked = never;
  std::vector<double> scout = never;
  std::vector<double> other = never;
  std::vector<char> buffer(HEAD);
  for (int round = 0; round < ROUNDS; ++round) {
    Round(files, &floor, [&buffer](const File& file) { Look(file, buffer.data()); });
    Round(files, &asked, [&buffer](const File& file) { LookAsAsked(file, buffer.data()); });
    Round(files, &scout, [](const File& file) { TypeScoutFile(file.wide.c_str()); });
    Round(files, &other,
          [&magic](const File& file) { magic_file(magic.get(), file.path.c_str()); });
  }
  std::printf("{\"files\": %zu, ", files.size());
  Print("floor", floor, ", ");
  Print("asked", asked, ", ");
  Print("typescout", scout, ", ");
  Print("libmagic", other, ", ");
  const std::vector<std::pair<const char*, const std::vector<double>*>> ways = {
      {"floor", &floor}, {"asked", &asked}, {"typescout", &scout}, {"libmagic", &other}};
  std::printf("\"groups\": {");
  PrintGroup("known by their heads", files, 0, 0, ways, ", ");
  PrintGroup("text", files, 1, ALL_TEXT_ROWS - 1, ways, ", ");
  PrintGroup("recognised by nobody", files, ALL_TEXT_ROWS, ALL_TEXT_ROWS, ways, "}}\n");
  return 0;
}
