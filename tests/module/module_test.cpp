// The six functions of the real module, on real files.
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <future>
#include <string>
#include <vector>

#include "core/registry.h"
#include "host/owners.h"
#include "tests/samples/sample.h"
#include "tests/support/documents.h"
#include "tests/support/temp_folder.h"
#include "typescout/typescout.h"

namespace typescout::tests {
namespace {

namespace fs = std::filesystem;

// Writes the files that the samples stand for, each into a folder of its own, since its name
// matters; their paths.
std::vector<std::wstring> WriteSamples(const TempFolder& folder) {
  std::vector<std::wstring> paths;
  for (const Sample& sample : AllSamples()) {
    const fs::path name = std::to_string(paths.size()) / fs::path(sample.path);
    paths.push_back(Wide(folder.Write(name, FileBytes(sample))));
  }
  return paths;
}

// Some samples put a document behind a head that no document has, which only the in-memory host
// can.
bool IsPossible(const Sample& sample) {
  constexpr std::size_t DOCUMENT_HEADER = 512;
  return sample.streams.empty() ||
         (sample.bytes.starts_with("\xD0\xCF\x11\xE0") && sample.bytes.size() >= DOCUMENT_HEADER);
}

TEST(Module, AnswersAsTheSamplesSay) {
  const TempFolder folder;
  std::vector<std::wstring> paths = WriteSamples(folder);
  for (std::size_t i = 0; i < paths.size(); ++i) {
    const Sample& sample = AllSamples()[i];
    if (!IsPossible(sample)) continue;
    for (int row = 0; row < RegistrySize(); ++row) {
      if (DetectorRegistry[static_cast<std::size_t>(row)].detect != sample.detector) continue;
      const int answer =
          CheckFiltersFromList(paths[i].data(), &row, 1, 0, nullptr, sample.requested);
      EXPECT_EQ(answer != 0, sample.verdict == YES) << sample.name << ", row " << row;
    }
  }
}

TEST(Module, AnswersTheSameOnEveryThread) {
  const TempFolder folder;
  const std::vector<std::wstring> files = WriteSamples(folder);
  std::vector<int> answers;
  for (const std::wstring& file : files) answers.push_back(TypeScoutFile(file.c_str()));
  std::atomic<int> differences = 0;
  std::vector<std::future<void>> threads;
  for (std::size_t i = 0; i < 8; ++i) {
    threads.push_back(std::async(std::launch::async, [&, i] {
      for (std::size_t k = 0; k < files.size(); ++k) {
        const std::size_t file = (k + i * 37) % files.size();
        if (TypeScoutFile(files[file].c_str()) != answers[file]) ++differences;
      }
    }));
  }
  threads.clear();  // waits for them
  EXPECT_EQ(differences, 0);
}

TEST(Module, TakesPathsOf259Characters) {
  const TempFolder folder;
  const fs::path last = u8"\U0001F30A";  // on Windows it counts twice
  for (const std::size_t length : {259u, 260u}) {
    fs::path path = folder.path();
    while (Wide(path).size() + 100 < length) path /= std::string(60, 'd');
    path /= std::string(length - Wide(path).size() - 1 - Wide(last).size(), 'n');
    path += last;
    ASSERT_TRUE(fs::exists(folder.Write(path, "\x89PNG\r\n\x1A\n"s)));
    EXPECT_EQ(TypeScoutFile(Wide(path).c_str()), length == 259 ? 0x0322 : 0);
  }
}

TEST(Module, ReadsFilesOfMoreThanFourGigabytes) {
  constexpr std::uint64_t FOUR_GIGABYTES = std::uint64_t{1} << 32;
  const TempFolder folder;
  const fs::path path = folder.Write("large", "start");
  fs::resize_file(path, FOUR_GIGABYTES + 3);
  FileOwner file;
  ASSERT_TRUE(file.Open(Wide(path).c_str()));
  EXPECT_EQ(file->GetLength(), FOUR_GIGABYTES + 3);
  std::string bytes = "xxxxx";
  ASSERT_TRUE(file.SeekTo(FOUR_GIGABYTES));
  EXPECT_EQ(file->Read(bytes.data(), 5), 3u);
  EXPECT_EQ(bytes, "\0\0\0xx"s);
  EXPECT_FALSE(file.SeekTo(FOUR_GIGABYTES + 4));
}

}  // namespace
}  // namespace typescout::tests
