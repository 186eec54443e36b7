// The six functions of the real module, on real files.
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "core/registry.h"
#include "host/owners.h"
#include "tests/samples/sample.h"
#include "tests/support/compound_writer.h"
#include "tests/support/temp_folder.h"
#include "typescout/typescout.h"

namespace typescout::tests {
namespace {

namespace fs = std::filesystem;

// Writes the file that the sample stands for: itself, or a real document with its streams; in a
// folder of its own, since its name matters.
fs::path WriteSample(const TempFolder& folder, const Sample& sample) {
  static std::atomic<int> count = 0;
  return folder.Write(std::to_string(++count) / fs::path(sample.path),
                      sample.streams.empty() ? sample.bytes : WriteCompound(sample.streams));
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
  for (const Sample& sample : AllSamples()) {
    if (!IsPossible(sample)) continue;
    std::wstring path = Wide(WriteSample(folder, sample));
    for (int index = 0; index < RegistrySize(); ++index) {
      if (DetectorRegistry[static_cast<std::size_t>(index)].detect != sample.detector) continue;
      const int answer = CheckFiltersFromList(path.data(), &index, 1, 0, nullptr, sample.requested);
      EXPECT_EQ(answer != 0, sample.verdict == YES) << sample.name << ", row " << index;
    }
  }
}

TEST(Module, AnswersTheSameOnEveryThread) {
  const TempFolder folder;
  std::vector<std::wstring> files;
  std::vector<int> answers;
  for (const Sample& sample : AllSamples()) {
    files.push_back(Wide(WriteSample(folder, sample)));
    answers.push_back(TypeScoutFile(files.back().c_str()));
  }
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

TEST(Module, AnswersNothingForWhatIsNoFile) {
  const TempFolder folder;
  EXPECT_EQ(TypeScoutFile(nullptr), 0);
  for (const fs::path& path :
       {fs::path(), folder.path(), folder.path() / "missing", folder.Write("empty", "")}) {
    EXPECT_EQ(TypeScoutFile(Wide(path).c_str()), 0) << path;
  }
}

TEST(Module, TakesPathsOf259Characters) {
  const TempFolder folder;
  // Folders and a name that make the path exactly as long as wanted.
  const auto pathOf = [&folder](std::size_t length) {
    fs::path path = folder.path();
    while (Wide(path).size() + 100 < length) path /= std::string(60, 'd');
    path /= std::string(length - Wide(path).size() - 1, 'n');
    return Wide(folder.Write(path, "\x89PNG\r\n\x1A\n"s));
  };
  EXPECT_EQ(TypeScoutFile(pathOf(259).c_str()), 0x0322);
  EXPECT_EQ(TypeScoutFile(pathOf(260).c_str()), 0);
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

// A picture of so much data that the file shrinks while it is read.
TEST(Module, ThrowsWhenAFileShrinksUnderIt) {
  const TempFolder folder;
  const std::string gif = PadTo(13, "GIF89a") + PadTo(10, ",") + Fill(16 << 20, '\xFF');
  const auto file = folder.Write("shrinking.gif", gif);
  std::atomic<bool> done = false;
  std::thread shrinker([&] {
    while (!done) {
      folder.Write("shrinking.gif", gif);
      std::this_thread::sleep_for(std::chrono::milliseconds(3));
      fs::resize_file(file, 60'000);
    }
  });
  int thrown = -1;
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (thrown == -1 && std::chrono::steady_clock::now() < end) {
    try {
      TypeScoutFile(Wide(file).c_str());
    } catch (int value) {
      thrown = value;
    }
  }
  done = true;
  shrinker.join();
  EXPECT_EQ(thrown, 0);
}

}  // namespace
}  // namespace typescout::tests
