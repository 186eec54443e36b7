// A folder of a test's own on the real file system, private to its user, removed with everything in
// it.
#ifndef TYPESCOUT_TESTS_SUPPORT_TEMP_FOLDER_H
#define TYPESCOUT_TESTS_SUPPORT_TEMP_FOLDER_H

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>

namespace typescout::tests {

// The path as the library takes it, whatever the locale.
inline std::wstring Wide(const std::filesystem::path& path) {
  if constexpr (sizeof(wchar_t) == 2) return path.wstring();
  const std::u32string characters = path.u32string();
  return {characters.begin(), characters.end()};
}

class TempFolder {
 public:
  TempFolder() {
    static std::atomic<int> count = 0;
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    path_ = std::filesystem::temp_directory_path() /
            ("typescout-" + std::to_string(now) + "-" + std::to_string(++count));
    std::filesystem::create_directories(path_);
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  const std::filesystem::path& path() const { return path_; }

  // Writes a file (and the folders above it) below the folder; its full path.
  std::filesystem::path Write(const std::filesystem::path& name, const std::string& bytes) const {
    const std::filesystem::path file = path_ / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << bytes;
    return file;
  }

 private:
  std::filesystem::path path_;
};

}  // namespace typescout::tests

#endif  // TYPESCOUT_TESTS_SUPPORT_TEMP_FOLDER_H
