// Reads a stream of a compound document, by whichever reader opened it.
#ifndef TYPESCOUT_TESTS_SUPPORT_READ_STREAM_H
#define TYPESCOUT_TESTS_SUPPORT_READ_STREAM_H

#include <gtest/gtest.h>

#include <string>

#include "host/owners.h"

namespace typescout::tests {

inline const std::string NOT_THERE = "(not there)";

// The stream's content, read piece after piece; NOT_THERE when it does not open. `storage` may be
// null.
inline std::string ReadStream(IStorage* storage, const wchar_t* name, std::size_t piece = 60'000) {
  InterfaceOwner<IStream> stream;
  if (storage == nullptr || storage->OpenStream(name, nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0,
                                                stream.Receive()) != S_OK) {
    EXPECT_EQ(stream.get(), nullptr);
    return NOT_THERE;
  }
  std::string content;
  std::string bytes(piece, '\0');
  HRESULT result = S_OK;
  std::uint32_t read = 0;
  do {
    result = stream->Read(bytes.data(), static_cast<std::uint32_t>(piece), &read);
    content.append(bytes, 0, read);
  } while (result >= 0 && read > 0 && content.size() < 200'000);
  return content;
}

}  // namespace typescout::tests

#endif  // TYPESCOUT_TESTS_SUPPORT_READ_STREAM_H
