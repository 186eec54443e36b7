// What the contract test needs of a host: files laid out on its machine.
#ifndef TYPESCOUT_TESTS_CONTRACT_FIXTURE_H
#define TYPESCOUT_TESTS_CONTRACT_FIXTURE_H

#include <map>
#include <string>

#include "host/structured_storage.h"

namespace typescout::tests {

// Puts a file there; its path.
std::wstring PutFile(const std::wstring& name, const std::string& bytes);

// Puts a compound document there; its path.
std::wstring PutDocument(const std::wstring& name, const CLSID& classId,
                         const std::map<std::wstring, std::string>& streams);

// The path of a name at which there is nothing.
std::wstring MissingPath();

}  // namespace typescout::tests

#endif  // TYPESCOUT_TESTS_CONTRACT_FIXTURE_H
