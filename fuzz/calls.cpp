// Fuzz target: calls of the exported functions on the machine in memory, with our own reader of
// compound documents. The choices behind the file (fuzz/choices.h) are the arguments, what goes
// wrong and what the modules answer.
#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <numeric>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/file_context.h"
#include "core/registry.h"
#include "core/suite_modules.h"
#include "fuzz/choices.h"
#include "host/compound/reader.h"
#include "host/memory/failing_allocation.h"
#include "host/memory/memory_host.h"
#include "host/path.h"
#include "tests/support/documents.h"
#include "tests/support/module_set.h"
#include "typescout/typescout.h"

namespace {

using fuzz::Choices;
using memory_host::Call;
using memory_host::TheMachine;
using typescout::DetectorRegistry;
using typescout::tests::MemorySource;

void Require(bool condition) {
  if (!condition) std::abort();
}

struct ModuleError {};
std::optional<Choices> firstModuleChoices;  // each call starts with these
std::optional<Choices> moduleChoices;
bool moduleHasThrown = false;

void ThrowByChoice() {
  if (moduleChoices->Next() % 4 != 3) return;
  moduleHasThrown = true;
  throw ModuleError();
}

int CheckForRaw(const wchar_t* /*path*/) {
  ThrowByChoice();
  return static_cast<std::int8_t>(moduleChoices->Next());
}

// Leaves strings in a tree of any shape.
std::int32_t GetAINativeData(typescout::AINativeDataQuery* query, void* /*reserved*/,
                             std::uint32_t* flags) {
  constexpr std::size_t SIZES[] = {0, 7, 8, 100, 2'046, 2'047, 3'000};
  const memory_host::Uncounted own;
  typescout::ModuleSetNode* const sentinel = typescout::tests::PartsOf(query).sentinel;
  for (int count = moduleChoices->Next() % 8; count > 0; --count) {
    typescout::ModuleSetNode** link = &sentinel->parent;
    for (int turns = moduleChoices->Next(); (*link)->isNil == 0; turns /= 2) {
      link = turns % 2 == 0 ? &(*link)->left : &(*link)->right;
    }
    const std::u16string text(moduleChoices->Among(SIZES), u's');
    typescout::tests::InsertString(*link, sentinel, text);
  }
  ThrowByChoice();
  *flags = moduleChoices->Next();
  return static_cast<std::int8_t>(moduleChoices->Next());
}

void LayOutModules(Choices* choices) {
  constexpr std::size_t MODULE_CHOICES = 20;
  firstModuleChoices = choices->Part(MODULE_CHOICES);
  if (choices->Next() % 2 == 0) return;
  TheMachine().modules[typescout::CAMERA_RAW_MODULE.name][typescout::CAMERA_RAW_MODULE.function] =
      reinterpret_cast<void*>(CheckForRaw);
  const auto path =
      SystemIO::Path::Combine(TheMachine().filtersDir.c_str(), typescout::PDF_MODULE.name);
  TheMachine().modules[std::wstring(path.View())][typescout::PDF_MODULE.function] =
      reinterpret_cast<void*>(GetAINativeData);
}

void LayOutFile(Choices* choices, const std::wstring& path, std::string content, int* failingRead) {
  constexpr std::size_t STEP = 400;
  // Zeros before the last third, so that a short input reaches beyond the head.
  content.insert(content.size() - content.size() / 3, choices->Next() * STEP, '\0');
  TheMachine().documentReader = {
      [](const std::string& bytes) { return compound::HasSignature(MemorySource(bytes)); },
      [failingRead](const std::string& bytes, IStorage** storage) {
        return compound::Open(std::make_unique<MemorySource>(bytes, failingRead), storage);
      },
      compound::ReadClass};
  const bool exists = choices->Next() % 16 != 15;
  if (exists) TheMachine().files[path] = std::move(content);
}

struct Faults {
  bool any = false;
  int document = 0;    // the read of a compound document that fails
  int allocation = 0;  // the allocation that fails
};

Faults LayOutFaults(Choices* choices, const std::wstring& path) {
  constexpr Call CALLS[] = {Call::OPEN_FILE,    Call::READ_FILE,  Call::SEEK_FILE,
                            Call::OPEN_STORAGE, Call::READ_CLASS, Call::IS_STORAGE_FILE,
                            Call::LOAD_MODULE,  Call::FIND_SYMBOL};
  constexpr HRESULT CODES[] = {STG_E_ACCESSDENIED, STG_E_LOCKVIOLATION, STG_E_FILENOTFOUND};
  const int kind = choices->Next() % 8;
  const int nth = 1 + choices->Next() % 8;
  Faults faults{.any = kind >= 1 && kind <= 4};
  if (kind == 1) TheMachine().faults.push_back({choices->Among(CALLS), nth, choices->Among(CODES)});
  if (kind == 2) faults.document = nth;
  if (kind == 3) faults.allocation = nth;
  if (kind == 4) {  // the file shrinks
    TheMachine().beforeCall = [path, nth](Call call) {
      if (call != Call::READ_FILE || TheMachine().calls[call] != nth) return;
      std::string& bytes = TheMachine().files[path];
      bytes.resize(bytes.size() / 2);
    };
  }
  return faults;
}

// A call's answer; nothing when it threw. Nothing stays open but a module that threw.
template <typename Function>
std::optional<int> Answer(const Faults& faults, Function function) {
  std::optional<int> answer;
  moduleChoices = firstModuleChoices;
  moduleHasThrown = false;
  const int keptBefore = TheMachine().keptModules;
  try {
    const memory_host::FailingAllocation failing(faults.allocation);
    answer = function();
  } catch (const int thrown) {
    Require(thrown == 0 && faults.any);
  } catch (const ModuleError&) {
    Require(moduleHasThrown);
  }
  Require(TheMachine().OpenObjects() == 0);
  Require(TheMachine().keptModules - keptBefore == (moduleHasThrown ? 1 : 0));
  return answer;
}

// Asks every row about the content as a head, which lies in a heap block of its exact size. A
// scan of the same bytes answers with the first row that accepts them.
void AskEveryRow(const std::string& content, typescout::FilterId requested) {
  std::vector<unsigned char> head(content.begin(), content.end());
  typescout::FileContext file;
  file.requestedFilterId = requested;
  typescout::ProbeContext probe = {};
  probe.head = head.data();
  probe.headLength = static_cast<std::int32_t>(head.size());
  probe.file = &file;
  typescout::FilterId first = 0;
  std::vector<int> rows;
  for (const typescout::DetectorEntry& row : DetectorRegistry) {
    rows.push_back(static_cast<int>(rows.size()));
    if (row.detect(&probe) != 0 && first == 0) first = row.filterId;
  }
  if (head.empty()) return;  // no bytes are not the same as an empty head
  Require(CheckFiltersFromList(nullptr, rows.data(), static_cast<int>(rows.size()),
                               probe.headLength, head.data(), requested) == first);
}

std::vector<int> ChooseIds(Choices* choices) {
  constexpr int STRANGE[] = {0, -1, 0x0706, 0x0800, 0x3001, INT_MAX, INT_MIN};
  std::vector<int> ids(choices->Next() % 8);
  for (int& id : ids) {
    const std::size_t row = choices->Next();
    id = row < DetectorRegistry.size() ? DetectorRegistry[row].filterId : choices->Among(STRANGE);
  }
  return ids;
}

// How a list or a buffer is given: whole, with a negative length, or as a null pointer with any.
template <typename Value>
std::pair<Value*, int> Give(Choices* choices, Value* values, std::size_t size) {
  constexpr int NEGATIVES[] = {-1, INT_MIN};
  constexpr int ANY[] = {3, INT_MAX, -1, INT_MIN};
  const int kind = choices->Next() % 4;
  if (kind == 2) return {values, choices->Among(NEGATIVES)};
  if (kind == 3) return {nullptr, choices->Among(ANY)};
  return {values, choices->Next() % 8 == 7 ? 0 : static_cast<int>(size)};
}

// Both list functions, with any arguments that a caller may give.
void CheckLists(Choices* choices, const Faults& faults, std::wstring path, std::string content,
                int requested) {
  const std::vector<int> ids = ChooseIds(choices);
  std::vector<int> list = ids;
  const auto [first, count] = Give(choices, list.data(), ids.size());
  const auto [buf, bufLen] =
      Give(choices, reinterpret_cast<unsigned char*>(content.data()), content.size());
  wchar_t* const itsPath = choices->Next() % 8 == 7 ? nullptr : path.data();
  const auto ask = [&, first = first, count = count, buf = buf, bufLen = bufLen](auto function) {
    return Answer(faults, [&] { return function(itsPath, first, count, bufLen, buf, requested); });
  };
  const std::optional<int> answer = ask(CheckFiltersFromIDList);
  if (faults.any) return;
  const bool hasList = first != nullptr && count > 0;
  const bool hasHead =
      (itsPath != nullptr && TheMachine().files.contains(path)) || (buf != nullptr && bufLen >= 0);
  for (std::size_t i = 0; i < ids.size(); ++i) {
    Require(list[i] == (hasList && hasHead ? typescout::FindRegistryIndex(ids[i]) : ids[i]));
  }
  if (answer != 0 && answer)
    Require(hasList && std::find(ids.begin(), ids.end(), *answer) != ids.end());
  if (hasHead) Require(answer == ask(CheckFiltersFromList));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::wstring NAMES[] = {L"file",      L"drawing.vxr", L"plan.ZRS", L"symbols.tsl",
                                       L"paper.pub", L"page.pdf",    L"raw.zrf",  L"photo.cr2"};
  constexpr int REQUESTED[] = {0, 0x0503, 0x0509, 0x0519, 0x0535, -1};
  constexpr int DRAWING_OBJECT = 0x0706;
  memory_host::Reset();
  Choices choices(data, size);
  const std::string content = choices.Content();
  const int requested = choices.Among(REQUESTED);
  AskEveryRow(content, requested);

  const std::wstring path = choices.Among(NAMES);
  int failingRead = 0;
  LayOutFile(&choices, path, content, &failingRead);
  const Faults faults = LayOutFaults(&choices, path);
  failingRead = faults.document;
  LayOutModules(&choices);
  CheckLists(&choices, faults, path, content, requested);

  const std::optional<int> scanned = Answer(faults, [&] { return TypeScoutFile(path.c_str()); });
  std::vector<int> rows(DetectorRegistry.size());
  std::iota(rows.begin(), rows.end(), 0);
  std::wstring copy = path;
  const std::optional<int> listed = Answer(faults, [&] {
    return CheckFiltersFromList(copy.data(), rows.data(), static_cast<int>(rows.size()), 0, nullptr,
                                0);
  });
  Require(faults.any || scanned == listed || scanned == DRAWING_OBJECT);
  return 0;
}
