// Fuzz target: a document that the module TvnPDFImport looks at.
#include "detectors/postscript/ai_native_data.h"
#include "fuzz/memory_file.h"

extern "C" std::int32_t GetAINativeData(typescout::AINativeDataQuery* query, void* reserved,
                                        std::uint32_t* flags);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const MemoryFile file(data, size);
  const std::wstring path = file.path();
  typescout::AINativeDataQuery query;
  query.path = path.c_str();
  std::uint32_t flags = 0;
  const std::int32_t answer = GetAINativeData(&query, nullptr, &flags);
  if ((answer != 0 && answer != 1) || (flags != 0 && (flags != 2 || answer == 0))) std::abort();
  return 0;
}
