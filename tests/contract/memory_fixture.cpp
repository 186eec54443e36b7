#include "host/memory/memory_host.h"
#include "tests/contract/fixture.h"

namespace typescout::tests {

std::wstring PutFile(const std::wstring& name, const std::string& bytes) {
  memory_host::TheMachine().files[name] = bytes;
  return name;
}

std::wstring PutDocument(const std::wstring& name, const CLSID& classId,
                         const std::map<std::wstring, std::string>& streams) {
  memory_host::TheMachine().documents[name] = {.classId = classId, .streams = streams};
  return PutFile(name, "\xD0\xCF\x11\xE0");
}

std::wstring MissingPath() { return L"missing"; }

}  // namespace typescout::tests
