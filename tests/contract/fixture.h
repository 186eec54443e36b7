// Files for the contract test, on the machine of the host that it is built against.
#ifndef TYPESCOUT_TESTS_CONTRACT_FIXTURE_H
#define TYPESCOUT_TESTS_CONTRACT_FIXTURE_H

#include <map>
#include <string>

#include "host/structured_storage.h"
#ifdef HOST_IN_MEMORY
#include "host/memory/memory_host.h"
#else
#include "tests/support/compound_writer.h"
#include "tests/support/temp_folder.h"
#endif

namespace typescout::tests {

using Streams = std::map<std::wstring, std::string>;

// Each returns a path: of a file or a compound document that is there now, of nothing.
#ifdef HOST_IN_MEMORY
inline std::wstring PutFile(const std::wstring& name, const std::string& bytes) {
  memory_host::TheMachine().files[name] = bytes;
  return name;
}
inline std::wstring PutDocument(const CLSID& classId, const Streams& streams) {
  memory_host::TheMachine().documents[L"document"] = {.classId = classId, .streams = streams};
  return PutFile(L"document", "\xD0\xCF\x11\xE0");
}
inline std::wstring MissingPath() { return L"missing"; }
#else
inline const TempFolder folder;

inline std::wstring PutFile(const std::wstring& name, const std::string& bytes) {
  return Wide(folder.Write(name, bytes));
}
inline std::wstring PutDocument(const CLSID& classId, const Streams& streams) {
  return PutFile(L"document", WriteCompound(streams, {.classId = classId}));
}
inline std::wstring MissingPath() { return Wide(folder.path() / "missing"); }
#endif

}  // namespace typescout::tests

#endif  // TYPESCOUT_TESTS_CONTRACT_FIXTURE_H
