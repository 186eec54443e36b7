#include "tests/contract/fixture.h"
#include "tests/support/compound_writer.h"
#include "tests/support/temp_folder.h"

namespace typescout::tests {
namespace {

const TempFolder& Folder() {
  static const TempFolder FOLDER;
  return FOLDER;
}

}  // namespace

std::wstring PutFile(const std::wstring& name, const std::string& bytes) {
  return Wide(Folder().Write(name, bytes));
}

std::wstring PutDocument(const std::wstring& name, const CLSID& classId,
                         const std::map<std::wstring, std::string>& streams) {
  return PutFile(name, WriteCompound(streams, {.classId = classId}));
}

std::wstring MissingPath() { return Wide(Folder().path() / "missing"); }

}  // namespace typescout::tests
