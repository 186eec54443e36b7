// What a question costs: each detector on typical and on worst heads, and the scans as a whole.
#include <benchmark/benchmark.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "catalogue/filters.h"
#include "core/file_context.h"
#include "core/registry.h"
#include "tests/samples/sample.h"
#include "typescout/typescout.h"

namespace {

using typescout::DetectorEntry;
using typescout::DetectorRegistry;
using typescout::HEAD_CAPACITY;

struct NamedHead {
  std::string name;
  std::string bytes;
};

std::string RandomBytes() {
  std::mt19937 random(1);
  std::string bytes(HEAD_CAPACITY, '\0');
  for (char& c : bytes) c = static_cast<char>(random());
  return bytes;
}

// `unit` over and over, between `start` and `end`.
std::string Repeated(std::string start, const std::string& unit, const std::string& end = "") {
  while (start.size() + unit.size() + end.size() <= HEAD_CAPACITY) start += unit;
  return start + end;
}

// Heads that make a careless search or walk slow. The last five are the worst that tools/slow_heads
// found.
std::vector<NamedHead> WorstHeads() {
  return {
      {"zeros", Repeated("", std::string(1, '\0'))},
      {"spaces", Repeated("", " ")},
      {"line ends", Repeated("", "\r\n")},
      {"endless line", Repeated("", "x")},
      {"0xFF", Repeated("", "\xFF")},
      {"random", RandomBytes()},
      {"PostScript, percent signs", Repeated("%!PS-Adobe EPSF\n", "%")},
      {"PostScript, short lines", Repeated("%!PS-Adobe\n%%BoundingBox: 0\nA&L\n", "%%E\n")},
      {"PostScript, false marks",
       Repeated("%!PS EPSF\n%%BoundingBox:\nA&L\n", "%%EndSetu%%Creator")},
      {"guillemets", Repeated("abc",
                              "\xAE"
                              "TS,,,,,,")},
      {"JPEG markers", Repeated("", "\xFF\xD8")},
      {"GIF comments",
       Repeated(std::string("GIF89a\0\0\0\0\0\0\0", 13), std::string("!\xFE\0", 3))},
      {"PostScript, marks that do not count",
       Repeated("%!PS-Adobe EPSF\n", "\nA%%BoundingBox:Adobe Illustrator7.0",
                "%%Creator:%%EndSetup")},
      {"PostScript, marks cut short",
       Repeated("%!PS-Adobe EPSF\n%%BoundingBox:\n",
                "Adobe_Illustrato%%BoundingBoxAdobe IllustratoA&L%%Creator%%EndSetu",
                "%%Creator:7.0")},
      {"PostScript, marks behind zeros",
       Repeated("%!PS EPSF\n%%BoundingBox:\n", std::string("\0A&L\n", 5), "%%Creator:7.0")},
      {"guillemets, commands alone", Repeated("", "\xAE\xAETS")},
      {"CGM elements", Repeated(std::string("\0 ", 2), std::string("` \0@", 4))},
  };
}

void AskRow(benchmark::State& state, const DetectorEntry& row, const std::string& head) {
  typescout::FileContext file;
  const typescout::ProbeContext probe = {
      .head = reinterpret_cast<const unsigned char*>(head.data()),
      .headLength = static_cast<std::int32_t>(head.size()),
      .path = nullptr,
      .classId = {},
      .storage = nullptr,
      .file = &file};
  for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(row.detect(&probe));
}

void ScanMemory(benchmark::State& state, std::string head) {
  std::vector<int> rows(DetectorRegistry.size());
  std::iota(rows.begin(), rows.end(), 0);
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(CheckFiltersFromList(
        nullptr, rows.data(), static_cast<int>(rows.size()), static_cast<int>(head.size()),
        reinterpret_cast<unsigned char*>(head.data()), 0));
  }
}

void ScanFile(benchmark::State& state, const std::string& bytes) {
  const std::filesystem::path path = std::filesystem::temp_directory_path() / "typescout-bench";
  std::ofstream(path, std::ios::binary) << bytes;
  const std::wstring wide = path.wstring();
  for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(TypeScoutFile(wide.c_str()));
  std::filesystem::remove(path);
}

// The benchmarks' names have three parts, with '|' between them.
std::string RowName(const DetectorEntry& row) {
  const std::string id = typescout::catalogue::FormatId(row.filterId);
  const std::string name(typescout::catalogue::FindFilter(row.filterId)->name);
  return "row|" + (name.find(id) == std::string::npos ? name + " (" + id + ")" : name);
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<NamedHead> worst = WorstHeads();
  for (const DetectorEntry& row : DetectorRegistry) {
    if (row.detect == typescout::DetectNever) continue;
    for (const typescout::tests::Sample& sample : typescout::tests::AllSamples()) {
      if (sample.detector != row.detect || sample.verdict != typescout::tests::YES) continue;
      benchmark::RegisterBenchmark((RowName(row) + "|typical").c_str(), AskRow, row, sample.bytes);
      break;
    }
    for (const NamedHead& head : worst) {
      benchmark::RegisterBenchmark((RowName(row) + "|" + head.name).c_str(), AskRow, row,
                                   head.bytes);
    }
  }
  for (const NamedHead& head : worst) {
    benchmark::RegisterBenchmark(("scan|memory|" + head.name).c_str(), ScanMemory, head.bytes);
  }
  for (const NamedHead& head : worst) {
    benchmark::RegisterBenchmark(("scan|file|" + head.name).c_str(), ScanFile, head.bytes);
  }
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
