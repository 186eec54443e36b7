// What other programs do on the same machine: hold files open, lock parts of them, write compound
// documents. Keeps the system's header away from the tests, since ours declare some of the same.
#ifndef TYPESCOUT_TESTS_WINDOWS_OTHER_PROGRAM_H
#define TYPESCOUT_TESTS_WINDOWS_OTHER_PROGRAM_H

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>

namespace typescout::tests {

enum Access : std::uint32_t { NOTHING = 0, READS = 1, WRITES = 2, DELETES = 4 };
constexpr Access operator|(Access a, Access b) {
  return static_cast<Access>(static_cast<std::uint32_t>(a) | b);
}
inline constexpr Access ALL = READS | WRITES | DELETES;

// A file that another program holds open, for `what`, while it allows everybody else `others`.
class HeldFile {
 public:
  HeldFile(const std::filesystem::path& path, Access what, Access others);
  HeldFile(const HeldFile&) = delete;
  HeldFile& operator=(const HeldFile&) = delete;
  ~HeldFile();

  // False when somebody else denies it.
  bool IsHeld() const;
  // Whether these bytes are now nobody else's to read.
  bool Lock(std::uint32_t first, std::uint32_t count) const;

 private:
  void* handle_;
};

// A pipe that waits for somebody to open it.
class WaitingPipe {
 public:
  explicit WaitingPipe(const wchar_t* name);
  WaitingPipe(const WaitingPipe&) = delete;
  WaitingPipe& operator=(const WaitingPipe&) = delete;
  ~WaitingPipe();

 private:
  void* handle_;
};

// A module of the loader's, from this very path.
class LoadedModule {
 public:
  explicit LoadedModule(const std::filesystem::path& path);
  LoadedModule(const LoadedModule&) = delete;
  LoadedModule& operator=(const LoadedModule&) = delete;
  ~LoadedModule();

  bool IsLoaded() const { return module_ != nullptr; }

 private:
  void* module_;
};

// What the system answers to opening the compound document in this mode.
std::uint32_t OpenDocumentAnswer(const std::filesystem::path& path, std::uint32_t mode);

// Writes a compound document by the system's own functions; `rootClass` is a class identifier with
// braces, or empty. False when the system refuses.
bool WriteDocument(const std::filesystem::path& path, const std::wstring& rootClass,
                   const std::map<std::wstring, std::string>& streams);

}  // namespace typescout::tests

#endif  // TYPESCOUT_TESTS_WINDOWS_OTHER_PROGRAM_H
