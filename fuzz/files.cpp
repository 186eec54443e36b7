// Fuzz target: a whole file on the in-memory machine through the whole road: the head, the rest of
// a GIF, the paint program's TIFF tag, text, extensions. The first byte chooses the name, the
// second how many zero bytes (in units of 400) go before the last third, so that a short input
// reaches beyond the head.
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <string>

#include "core/registry.h"
#include "host/memory/memory_host.h"
#include "typescout/typescout.h"

namespace {

const wchar_t* const NAMES[] = {L"file",      L"drawing.vxr", L"plan.ZRS", L"symbols.tsl",
                                L"paper.pub", L"page.pdf",    L"raw.zrf"};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  memory_host::Reset();
  const std::wstring path = NAMES[data[0] % std::size(NAMES)];
  std::string bytes(data + 2, data + size);
  bytes.insert(bytes.size() - bytes.size() / 3, std::string(data[1] * std::size_t{400}, '\0'));
  memory_host::TheMachine().files[path] = bytes;

  int first = 0;
  for (int index = 0; index < typescout::RegistrySize() && first == 0; ++index) {
    std::wstring copy = path;
    first = CheckFiltersFromList(copy.data(), &index, 1, 0, nullptr, 0);
  }
  if (TypeScoutFile(path.c_str()) != first) std::abort();
  if (memory_host::TheMachine().OpenObjects() != 0) std::abort();
  return 0;
}
