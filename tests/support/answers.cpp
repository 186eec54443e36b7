// answers FOLDER [opened]: what the module says about each file below the folder: its name, the
// answer of a full scan, which of the rows that look into documents accept it, and on demand
// whether the host opens it as a compound document. One line a file, in the order of the names, so
// that two systems can be compared.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "host/owners.h"
#include "host/structured_storage.h"
#include "tests/support/temp_folder.h"
#include "typescout/typescout.h"

namespace {

// Word-processor graphics and documents, Publisher, Word.
constexpr int DOCUMENT_ROWS[] = {21, 24, 25, 26, 67, 79, 80};

bool IsOpened(const std::wstring& path) {
  typescout::InterfaceOwner<IStorage> storage;
  StgOpenStorage(path.c_str(), nullptr, STGM_READ | STGM_SHARE_DENY_WRITE, nullptr, 0,
                 storage.Receive());
  return static_cast<bool>(storage);
}

void Print(const std::filesystem::path& name, const std::filesystem::path& file, bool withOpened) {
  std::wstring path = typescout::tests::Wide(file);
  std::string line = name.generic_string();
  char id[16];
  std::snprintf(id, sizeof id, " 0x%04X", static_cast<unsigned>(TypeScoutFile(path.c_str())));
  line += id;
  for (const int row : DOCUMENT_ROWS) {
    int rows[] = {row};
    if (CheckFiltersFromList(path.data(), rows, 1, 0, nullptr, 0) != 0) {
      line += ' ' + std::to_string(row);
    }
  }
  if (withOpened && IsOpened(path)) line += " document";
  std::puts(line.c_str());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return 64;
  const std::filesystem::path folder = argv[1];
  std::vector<std::filesystem::path> names;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file()) names.push_back(entry.path().lexically_relative(folder));
  }
  std::sort(names.begin(), names.end());
  for (const auto& name : names) Print(name, folder / name, argc > 2);
  return 0;
}
