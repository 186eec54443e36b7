// compare LIST: over the files named in LIST (one a line), what a file costs in microseconds:
//   floor      open, fstat, read of up to 50,000 bytes, close
//   typescout  TypeScoutFile
//   libmagic   magic_file, its database loaded once
// They take turns over the whole list, several rounds; each file's fastest round counts, so that
// other work of the machine does not. Prints one line of JSON.
#include <fcntl.h>
#include <magic.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "typescout/typescout.h"

namespace {

constexpr int ROUNDS = 5;
constexpr std::size_t HEAD = 50'000;

struct File {
  std::string path;
  std::wstring wide;
  int answer;
};

struct Way {
  const char* name;
  std::function<void(const File&)> look;
  std::vector<double> fastest;  // of each file, in microseconds
  double fastestRound = 1e12;   // over all files, in microseconds
};

bool IsText(const File& file) { return file.answer == 0x0903 || file.answer == 0x0901; }
bool IsUnknown(const File& file) { return file.answer == 0; }
bool IsKnownByItsHead(const File& file) { return !IsText(file) && !IsUnknown(file); }

// What every program pays that looks at the start of a file.
void ReadHead(const File& file, std::vector<char>* buffer) {
  const int descriptor = open(file.path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) return;
  struct stat status;
  if (fstat(descriptor, &status) == 0 && read(descriptor, buffer->data(), HEAD) < 0) {
    buffer->front() = 0;
  }
  close(descriptor);
}

void Round(const std::vector<File>& files, Way* way) {
  const auto begin = std::chrono::steady_clock::now();
  for (std::size_t i = 0; i < files.size(); ++i) {
    const auto start = std::chrono::steady_clock::now();
    way->look(files[i]);
    const std::chrono::duration<double, std::micro> took = std::chrono::steady_clock::now() - start;
    way->fastest[i] = std::min(way->fastest[i], took.count());
  }
  const std::chrono::duration<double, std::micro> all = std::chrono::steady_clock::now() - begin;
  way->fastestRound = std::min(way->fastestRound, all.count());
}

double Mean(const std::vector<double>& times) {
  double sum = 0;
  for (const double time : times) sum += time;
  return times.empty() ? 0 : sum / static_cast<double>(times.size());
}

void Print(const Way& way) {
  std::vector<double> times = way.fastest;
  std::sort(times.begin(), times.end());
  const auto at = [&times](double part) {
    return times[static_cast<std::size_t>(part * static_cast<double>(times.size() - 1))];
  };
  std::printf(
      "\"%s\": {\"mean\": %.3f, \"median\": %.3f, \"p99\": %.3f, \"max\": %.3f, "
      "\"round\": %.3f, \"percentiles\": [",
      way.name, Mean(times), at(0.5), at(0.99), at(1),
      way.fastestRound / static_cast<double>(times.size()));
  for (int i = 0; i <= 100; ++i) std::printf("%s%.3f", i == 0 ? "" : ", ", at(i / 100.0));
  std::printf("]}, ");
}

// How many of the files are of this kind, and the mean of each way's times over them.
void PrintGroup(const char* name, const std::vector<File>& files, bool (*isInGroup)(const File&),
                const std::vector<Way>& ways, const char* end) {
  const auto count = std::count_if(files.begin(), files.end(), isInGroup);
  std::printf("\"%s\": {\"files\": %td", name, count);
  for (const Way& way : ways) {
    std::vector<double> times;
    for (std::size_t i = 0; i < files.size(); ++i) {
      if (isInGroup(files[i])) times.push_back(way.fastest[i]);
    }
    std::printf(", \"%s\": %.3f", way.name, Mean(times));
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
    files.push_back({line, wide, TypeScoutFile(wide.c_str())});
  }
  const std::unique_ptr<magic_set, decltype(&magic_close)> magic(magic_open(MAGIC_MIME_TYPE),
                                                                 magic_close);
  if (files.empty() || magic == nullptr || magic_load(magic.get(), nullptr) != 0) {
    std::fprintf(stderr, "compare: no files, or no database of libmagic\n");
    return 1;
  }
  const std::vector<double> never(files.size(), 1e12);
  std::vector<char> buffer(HEAD);
  std::vector<Way> ways = {
      {"floor", [&buffer](const File& file) { ReadHead(file, &buffer); }, never},
      {"typescout", [](const File& file) { TypeScoutFile(file.wide.c_str()); }, never},
      {"libmagic", [&magic](const File& file) { magic_file(magic.get(), file.path.c_str()); },
       never}};
  for (int round = 0; round < ROUNDS; ++round) {
    for (Way& way : ways) Round(files, &way);
  }
  std::printf("{\"files\": %zu, ", files.size());
  for (const Way& way : ways) Print(way);
  std::printf("\"groups\": {");
  PrintGroup("known by their heads", files, IsKnownByItsHead, ways, ", ");
  PrintGroup("text", files, IsText, ways, ", ");
  PrintGroup("not recognised", files, IsUnknown, ways, "}}\n");
  return 0;
}
