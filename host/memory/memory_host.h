// The host for tests, a machine in memory: it answers from files, compound documents and
// modules that a test lays out, with faults on demand and a count of what is open.
//
// There is one such machine in a program that links this host. It is not for several threads.
#ifndef TYPESCOUT_HOST_MEMORY_MEMORY_HOST_H
#define TYPESCOUT_HOST_MEMORY_MEMORY_HOST_H

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "host/structured_storage.h"

namespace memory_host {

// The calls that can be seen, counted and made to fail.
enum class Call {
  OPEN_FILE,
  READ_FILE,
  SEEK_FILE,
  IS_STORAGE_FILE,
  OPEN_STORAGE,
  READ_CLASS,
  OPEN_STREAM,
  READ_STREAM,
  LOAD_MODULE,
  FIND_SYMBOL,
  UNLOAD_MODULE,  // never fails
};

struct Document {
  CLSID classId = {};
  std::map<std::wstring, std::string> streams;  // by name; looked up without regard to ASCII case
};

// The exported functions of a module, by name.
using Module = std::map<std::string, void*>;

// Reads the compound documents among the files, in place of `documents` below.
struct DocumentReader {
  std::function<bool(const std::string& bytes)> isDocument;
  std::function<HRESULT(const std::string& bytes, IStorage** storage)> open;
  std::function<HRESULT(IStorage* storage, CLSID* classId)> readClass;
};

struct Fault {
  Call call;
  int nth = 1;  // the n-th such call from Reset() on fails, and no other
  // What the failing call answers where it answers a code. A failing read of a file or stream comes
  // back one byte short (with nothing when nothing was asked for), a failing seek with another
  // position, a failing load or look-up with nothing.
  HRESULT code = STG_E_ACCESSDENIED;
};

struct Machine {
  std::map<std::wstring, std::string> files;
  std::map<std::wstring, std::uint64_t> lengths;  // reported instead of the real length
  // Gives the bytes of a file from `position` on that lie behind its content but within its
  // reported length. Unset: there are none.
  std::function<void(std::uint64_t position, std::span<char> bytes)> fillBeyondContent;
  std::map<std::wstring, Document>
      documents;  // the files of these paths open as compound documents
  std::optional<DocumentReader> documentReader;
  std::map<std::wstring, Module> modules;  // by the name or path given to TvnLibrary
  std::wstring filtersDir = L"/filters";
  std::function<bool(const std::string& bytes)> isBudi;  // unset: no file is BUDI

  std::vector<Fault> faults;
  // Runs before every call is answered: may lay out the machine anew, and may throw.
  std::function<void(Call)> beforeCall;

  // What has happened since Reset().
  std::map<Call, int> calls;
  std::vector<std::uint32_t> storageModes;  // of the documents that were asked for, in order
  std::vector<std::wstring> openedPaths;    // given to CFile::Open, in order

  // What is open now; all zero when nothing leaks.
  int openFiles = 0;
  int fileObjects = 0;
  int openStorages = 0;
  int openStreams = 0;
  int loadedModules = 0;
  int keptModules = 0;  // not open: their TvnLibrary ended without Unload(), which is no leak
  int openHandles = 0;  // a test counts up when it stores one; CloseHandle counts down

  int OpenObjects() const {
    return openFiles + fileObjects + openStorages + openStreams + loadedModules + openHandles;
  }
};

// The machine. Reset() empties it.
Machine& TheMachine();
void Reset();

}  // namespace memory_host

#endif  // TYPESCOUT_HOST_MEMORY_MEMORY_HOST_H
