// PDF files and the suite's PDF import module: what the module is asked, what becomes of its
// answer, and that nothing of it stays.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <new>
#include <stdexcept>
#include <string_view>

#include "core/file_context.h"
#include "detectors/postscript/ai_native_data.h"
#include "detectors/postscript/postscript.h"
#include "host/memory/failing_allocation.h"
#include "host/memory/memory_host.h"
#include "tests/support/ask.h"
#include "typescout/typescout.h"

namespace typescout::tests {
namespace {

using memory_host::Call;
using memory_host::TheMachine;

constexpr FilterId ILLUSTRATOR = 0x0503;
constexpr FilterId FILTER_0519 = 0x0519;
constexpr FilterId ILLUSTRATOR_PDF = 0x0535;

// Where the in-memory host has its filters, joined as the platform joins.
const std::wstring MODULE = (std::filesystem::path(L"/filters") / L"TvnPDFImport").wstring();

struct ModuleState {
  std::int32_t result = 1;
  std::uint32_t flags = 0;
  int calls = 0;
  std::uint32_t flagsBefore = 0;
  std::wstring path;
  void (*insert)(AINativeDataQuery* query) = nullptr;
};
ModuleState theModule;

std::int32_t Answer(AINativeDataQuery* query, void* reserved, std::uint32_t* flags) {
  ++theModule.calls;
  theModule.flagsBefore = *flags;
  theModule.path = query->path;
  EXPECT_EQ(reserved, nullptr);
  if (theModule.insert != nullptr) theModule.insert(query);
  *flags = theModule.flags;
  return theModule.result;
}

std::int32_t Throw(AINativeDataQuery* query, void* /*reserved*/, std::uint32_t* /*flags*/) {
  if (theModule.insert != nullptr) theModule.insert(query);
  throw std::runtime_error("module");
}

// The field of the record that stands `offset` bytes into it.
template <typename Field>
Field FieldAt(const AINativeDataQuery* query, std::size_t offset) {
  Field field;
  std::copy_n(reinterpret_cast<const unsigned char*>(query) + offset, sizeof(Field),
              reinterpret_cast<unsigned char*>(&field));
  return field;
}

// The set's parts, as the module's own standard library sees them.
ModuleSetNode* Sentinel(const AINativeDataQuery* query) {
  return static_cast<ModuleSetNode*>(FieldAt<void*>(query, 48));
}
void SetCount(AINativeDataQuery* query, std::uint64_t count) {
  std::copy_n(reinterpret_cast<const unsigned char*>(&count), sizeof count,
              reinterpret_cast<unsigned char*>(query) + 56);
}

std::u16string_view TextOf(const ModuleString& string) {
  return {string.capacity > 7 ? string.block : string.buffer, string.size};
}

// Inserts as a set does, only that the tree is never balanced: the order of the texts decides its
// shape.
void Insert(AINativeDataQuery* query, std::u16string_view text) {
  ModuleSetNode* const sentinel = Sentinel(query);
  auto* node = static_cast<ModuleSetNode*>(::operator new(sizeof(ModuleSetNode)));
  node->left = node->right = node->parent = sentinel;
  node->color = 0;
  node->isNil = 0;
  char16_t* place = node->value.buffer;
  node->value.size = text.size();
  node->value.capacity = std::max<std::uint64_t>(text.size(), 7);
  if (text.size() > 7) {
    place = static_cast<char16_t*>(::operator new(2 * (text.size() + 1)));
    node->value.block = place;
  }
  std::copy(text.begin(), text.end(), place);
  place[text.size()] = 0;

  ModuleSetNode** link = &sentinel->parent;
  while ((*link)->isNil == 0) {
    node->parent = *link;
    link = TextOf((*link)->value) > text ? &(*link)->left : &(*link)->right;
  }
  *link = node;
  SetCount(query, FieldAt<std::uint64_t>(query, 56) + 1);
}

// Lays out a tree that is one long branch.
void InsertChain(AINativeDataQuery* query, ModuleSetNode* ModuleSetNode::*side) {
  constexpr int COUNT = 200'000;
  ModuleSetNode* const sentinel = Sentinel(query);
  ModuleSetNode** link = &sentinel->parent;
  for (int i = 0; i < COUNT; ++i) {
    auto* node = static_cast<ModuleSetNode*>(::operator new(sizeof(ModuleSetNode)));
    node->left = node->right = node->parent = sentinel;
    node->isNil = 0;
    node->value.size = 0;
    node->value.capacity = 7;
    *link = node;
    link = &(node->*side);
  }
}

std::int32_t AskNow(const Sample& sample) {
  const std::int32_t answer = AskAboutHead(sample.detector, sample, sample.bytes.size());
  EXPECT_EQ(TheMachine().OpenObjects(), 0);
  return answer;
}

class IllustratorPdf : public testing::Test {
 protected:
  void SetUp() override {
    theModule = {};
    LayOut(pdf_);
    Install(Answer);
  }
  static void Install(GetAINativeDataFunction function) {
    TheMachine().modules[MODULE] = {{"GetAINativeData", reinterpret_cast<void*>(function)}};
  }
  std::int32_t AskWith(std::int32_t result, std::uint32_t flags, FilterId requested,
                       const wchar_t* path) {
    theModule.result = result;
    theModule.flags = flags;
    pdf_.requested = requested;
    pdf_.path = path;
    return AskNow(pdf_);
  }

  Sample pdf_{.name = "PDF", .detector = DetectIllustratorPdf, .bytes = "%PDF-1", .verdict = NO};
};

TEST_F(IllustratorPdf, FollowsTheModulesAnswer) {
  struct Case {
    std::int32_t result;
    std::uint32_t flags;
    FilterId requested;
    Verdict verdict;
    const wchar_t* path;
  };
  const wchar_t* const named = L"a.b/c.Pdf";
  const Case cases[] = {
      {0, 0x00, 0, YES, L"a"},           {0, 0x7F, ILLUSTRATOR, YES, L"a"},
      {1, 0x00, 0, NO, named},           {1, 0x6D, 0, NO, named},
      {-1, 0x00, 0, NO, named},          {1, 0x80, 0, YES, L"a"},
      {1, 0x80, ILLUSTRATOR, YES, L"a"}, {1, 0x80, FILTER_0519, YES, L"a"},
      {1, 0x12, ILLUSTRATOR, NO, named}, {1, 0x12, FILTER_0519, NO, named},
      {1, 0x02, 0x0504, YES, L"a"},      {1, 0x02, 0x0518, YES, L"a"},
      {1, 0x02, 0, YES, L"a"},           {-1, 0x12, 0, YES, L"a"},
      {1, 0x10, 0, YES, named},          {1, 0x10, 0, NO, L"c.pdf.bak"},
      {1, 0x10, 0, NO, L"c.pdfx"},       {1, 0x10, 0, NO, L"c.ai"},
      {1, 0x10, 0, NO, L"a.pdf/c"},      {1, 0x10, 0, NO, L"pdf"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(AskWith(c.result, c.flags, c.requested, c.path), c.verdict)
        << c.result << ' ' << c.flags << ' ' << c.requested;
  }
  EXPECT_EQ(theModule.calls, static_cast<int>(std::size(cases)));
  EXPECT_EQ(TheMachine().calls[Call::LOAD_MODULE], theModule.calls);
}

TEST_F(IllustratorPdf, IsAskedWithTheRecordThatTheModuleKnows) {
  theModule.flags = 0x02;
  theModule.insert = [](AINativeDataQuery* query) {
    EXPECT_EQ(FieldAt<const wchar_t*>(query, 0), query->path);
    EXPECT_EQ(FieldAt<std::uint32_t>(query, 8), 0u);
    EXPECT_EQ(FieldAt<std::uint64_t>(query, 16), 0u);
    EXPECT_EQ(FieldAt<std::uint32_t>(query, 24), 0u);
    EXPECT_EQ(FieldAt<std::uint32_t>(query, 28), 1u);
    EXPECT_EQ(*FieldAt<const std::int32_t*>(query, 32), 1);
    EXPECT_EQ(FieldAt<std::uint64_t>(query, 40), 0u);
    EXPECT_EQ(FieldAt<std::uint64_t>(query, 56), 0u);
    EXPECT_EQ(FieldAt<std::uint32_t>(query, 64), 0u);
    const ModuleSetNode* sentinel = Sentinel(query);
    EXPECT_EQ(sentinel->left, sentinel);
    EXPECT_EQ(sentinel->parent, sentinel);
    EXPECT_EQ(sentinel->right, sentinel);
    EXPECT_EQ(sentinel->color, 1);
    EXPECT_EQ(sentinel->isNil, 1);
  };
  EXPECT_EQ(AskNow(pdf_), 1);
  EXPECT_EQ(theModule.path, L"sample");
  EXPECT_EQ(theModule.flagsBefore, 0u);
}

// The address sanitizer's build sees what is not released, or twice.
TEST_F(IllustratorPdf, ReleasesTheStringsThatTheModuleLeaves) {
  theModule.insert = [](AINativeDataQuery* query) {
    for (std::u16string_view text :
         {u"seven..", u"eight...", u"", u"a string that is much too long for the buffer", u"zz",
          u"eighteen", u"another long string, of another node", u"a"}) {
      Insert(query, text);
    }
  };
  EXPECT_EQ(AskNow(pdf_), 0);
  Install(Throw);
  EXPECT_THROW(AskNow(pdf_), std::runtime_error);
}

TEST_F(IllustratorPdf, ReleasesLopsidedSetsWithoutAStack) {
  theModule.insert = [](AINativeDataQuery* query) { InsertChain(query, &ModuleSetNode::left); };
  EXPECT_EQ(AskNow(pdf_), 0);
  theModule.insert = [](AINativeDataQuery* query) { InsertChain(query, &ModuleSetNode::right); };
  EXPECT_EQ(AskNow(pdf_), 0);
}

TEST_F(IllustratorPdf, IsAYesWhereTheModuleCannotBeAsked) {
  TheMachine().modules[MODULE] = {{"GetAINativeDatum", nullptr}};
  EXPECT_EQ(AskNow(pdf_), 1);
  EXPECT_EQ(TheMachine().calls[Call::FIND_SYMBOL], 1);
  TheMachine().modules.clear();
  EXPECT_EQ(AskNow(pdf_), 1);
  EXPECT_EQ(TheMachine().calls[Call::FIND_SYMBOL], 1);
  Install(Answer);
  TheMachine().filtersDir = L"";
  EXPECT_EQ(AskNow(pdf_), 1);
  EXPECT_EQ(theModule.calls, 0);
}

TEST_F(IllustratorPdf, IsAYesWhenMemoryRunsOutOnTheWayToTheModule) {
  pdf_.path = L"pdf";
  LayOut(pdf_);
  Install(Answer);
  int yes = 0;
  bool hasFailed = true;
  for (int nth = 1; hasFailed; ++nth) {
    const memory_host::FailingAllocation failing(nth);
    yes += CheckOneFilter(L"pdf", ILLUSTRATOR_PDF, 0);
    hasFailed = failing.HasFailed();
    EXPECT_EQ(theModule.calls, hasFailed ? 0 : 1);
    EXPECT_EQ(TheMachine().OpenObjects(), 0);
  }
  EXPECT_GT(yes, 0);
}

TEST_F(IllustratorPdf, DoesNotLoadTheModuleInVain) {
  pdf_.requested = ILLUSTRATOR_PDF;
  EXPECT_EQ(AskNow(pdf_), 1);
  pdf_.bytes = "%PDF-";
  EXPECT_EQ(AskNow(pdf_), 0);
  const ProbeContext withoutPath = {.head = reinterpret_cast<const unsigned char*>("%PDF-1"),
                                    .headLength = 6,
                                    .path = nullptr,
                                    .classId = {},
                                    .storage = nullptr,
                                    .file = nullptr};
  EXPECT_EQ(DetectIllustratorPdf(&withoutPath), 1);
  EXPECT_EQ(TheMachine().calls[Call::LOAD_MODULE], 0);

  // An empty path is a path.
  ProbeContext withEmptyPath = withoutPath;
  withEmptyPath.path = L"";
  EXPECT_EQ(DetectIllustratorPdf(&withEmptyPath), 0);
  EXPECT_EQ(TheMachine().calls[Call::LOAD_MODULE], 1);
}

TEST_F(IllustratorPdf, PassesOnWhatTheModuleThrows) {
  Install(Throw);
  EXPECT_THROW(AskNow(pdf_), std::runtime_error);
  EXPECT_EQ(TheMachine().OpenObjects(), 0);
}

// The Illustrator row asks the same question first, and steps aside when the answer is yes.
TEST_F(IllustratorPdf, DecidesForTheIllustratorRow) {
  const Sample document{.name = "PDF with marks",
                        .detector = DetectIllustrator,
                        .bytes = "%PDF-1\nA&L %%BoundingBox:",
                        .verdict = NO};
  theModule.flags = 0x02;
  EXPECT_EQ(AskNow(document), 0);
  theModule.flags = 0;
  EXPECT_EQ(AskNow(document), 1);
  Sample empty = document;
  empty.bytes = "\r\n";
  EXPECT_EQ(AskNow(empty), 0);
  EXPECT_EQ(theModule.calls, 2);
}

}  // namespace
}  // namespace typescout::tests
