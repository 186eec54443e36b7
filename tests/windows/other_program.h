// What other programs do on the same machine: hold files open, lock parts of them, write compound
// documents. Keeps the system's header away from the tests, since ours declare some of the same.
#ifndef TYPESCOUT_TESTS_WINDOWS_OTHER_PROGRAM_H
#define TYPESCOUT_TESTS_WINDOWS_OTHER_PROGRAM_H

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>

namespace typescout::tests {

// What another program holds until the end of the scope; null when the system refused it.
using Held = std::unique_ptr<void, void (*)(void*)>;

enum Access : std::uint32_t { NOTHING = 0, READS = 1, WRITES = 2, DELETES = 4, ALL = 7 };

// A file, open for `what`, while other programs are allowed `others`.
Held HoldFile(const std::filesystem::path& path, Access what, Access others);

// Whether these bytes of the file are now locked against other programs.
bool Lock(const Held& file, std::uint32_t first, std::uint32_t count);

// A pipe that waits for a client.
Held HoldPipe(const wchar_t* name);

// A module of the loader's, from this very path.
Held HoldModule(const std::filesystem::path& path);

// Asks a typescout module that was loaded so about a file, on this thread and on another one. False
// when it is no such module or the answers differ.
bool ScanTwice(const Held& module, const std::filesystem::path& file, int* answer);

// Bytes that the C library's heap has handed out.
std::size_t HeapInUse();

// Whether the loader has a module from this path.
bool IsModuleLoaded(const std::filesystem::path& path);

// What the system answers to opening the compound document in this mode.
std::uint32_t OpenDocumentAnswer(const std::filesystem::path& path, std::uint32_t mode);

// Writes a compound document by the system's own functions; `rootClass` is a class identifier with
// braces, or empty. The streams are written in turn, a piece of `piece` bytes each, so that each of
// them lies in as many places as it has pieces. False when the system refuses.
bool WriteDocument(const std::filesystem::path& path, const std::wstring& rootClass,
                   const std::map<std::wstring, std::string>& streams,
                   std::size_t piece = std::string::npos);

}  // namespace typescout::tests

#endif  // TYPESCOUT_TESTS_WINDOWS_OTHER_PROGRAM_H
