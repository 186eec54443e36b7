// The rows that ask a module of the suite, the camera-raw decoder, the PDF import module or the
// graphics library: what it is asked, what becomes of its answer, and that nothing of it stays.
#include <algorithm>
#include <cstring>
#include <cwchar>
#include <filesystem>
#include <functional>
#include <iterator>
#include <new>
#include <stdexcept>
#include <string_view>
#include <tuple>

#include "core/file_context.h"
#include "detectors/postscript/ai_native_data.h"
#include "detectors/postscript/postscript.h"
#include "detectors/raster/raster.h"
#include "host/memory/failing_allocation.h"
#include "tests/support/ask.h"
#include "tests/support/module_set.h"

namespace typescout::tests {
namespace {

using memory_host::Call;
using memory_host::TheMachine;

constexpr int AN_ERROR = 99;
int decodersAnswer = 0;
std::wstring askedPath;

int CheckForRaw(const wchar_t* path) {
  askedPath = path;
  if (decodersAnswer == AN_ERROR) throw std::runtime_error("decoder");
  return decodersAnswer;
}

class CameraRaw : public OnTheMachine {
 protected:
  static std::int32_t AskDecoder(const std::wstring& path, int answer,
                                 const char* functionName = "CheckForRaw") {
    File photo = "raw";
    photo.path = path;
    LayOut(photo);
    TheMachine().modules[L"DCRaw"][functionName] = reinterpret_cast<void*>(CheckForRaw);
    decodersAnswer = answer;
    askedPath.clear();
    return AskAboutHead(DetectCameraRaw, photo, photo.bytes.size());
  }
};

TEST_F(CameraRaw, TakesAPositiveAnswerAsYes) {
  for (const int value : {2, 1, 0, -1}) {
    EXPECT_EQ(AskDecoder(L"folder.zrf/photo", value), value > 0 ? 1 : 0) << value;
    EXPECT_EQ(askedPath, L"folder.zrf/photo");
  }
  EXPECT_EQ(TheMachine().keptModules, 0);
  EXPECT_THROW(AskDecoder(L"a.cr2", AN_ERROR), std::runtime_error);
  EXPECT_EQ(TheMachine().keptModules, 1) << "the exception is the module's";
}

TEST_F(CameraRaw, LeavesTechnicalDrawingsAlone) {
  for (const wchar_t* path : {L"a.zrf", L"a.ZRW", L"a.b.Zr4", L".zrf"}) {
    EXPECT_EQ(AskDecoder(path, 1), 0) << path;
    EXPECT_EQ(TheMachine().calls[Call::LOAD_MODULE], 0) << path;
  }
  for (const wchar_t* path : {L"a.zrf.cr2", L"a.zr", L"a.zrf4", L"a.zr5", L"zrf", L""}) {
    EXPECT_EQ(AskDecoder(path, 1), 1) << path;
  }
}

TEST_F(CameraRaw, IsNoWithoutTheFunctionOrAPath) {
  EXPECT_EQ(AskDecoder(L"a.cr2", 1, "CheckForRAW"), 0);
  EXPECT_EQ(TheMachine().calls[Call::FIND_SYMBOL], 1);
  EXPECT_EQ(TheMachine().calls[Call::UNLOAD_MODULE], 1);
  const ProbeContext probe = {};
  EXPECT_EQ(DetectCameraRaw(&probe), 0);
}

constexpr FilterId ILLUSTRATOR = 0x0503;
constexpr FilterId FILTER_0519 = 0x0519;
constexpr FilterId ILLUSTRATOR_PDF = 0x0535;

// Where the in-memory host has its filters, joined as the platform joins.
const std::wstring MODULE = (std::filesystem::path(L"/filters") / L"TvnPDFImport").wstring();

struct ModuleState {
  std::int32_t result = 1;
  std::uint32_t flags = 0;
  int calls = 0;
  std::function<void(AINativeDataQuery* query)> insert;
  bool throws = false;
};
ModuleState theModule;

std::int32_t Answer(AINativeDataQuery* query, void* reserved, std::uint32_t* flags) {
  ++theModule.calls;
  EXPECT_EQ(reserved, nullptr);
  EXPECT_EQ(*flags, 0u);
  if (theModule.insert) theModule.insert(query);
  if (theModule.throws) throw std::runtime_error("module");
  *flags = theModule.flags;
  return theModule.result;
}

std::int32_t AskNow(const File& file, Detector detector = DetectIllustratorPdf) {
  const std::int32_t answer = AskAboutHead(detector, file, file.bytes.size());
  EXPECT_EQ(TheMachine().OpenObjects(), 0);
  return answer;
}

class IllustratorPdf : public OnTheMachine {
 protected:
  IllustratorPdf() {
    theModule = {};
    LayOut(pdf_);
    TheMachine().modules[MODULE] = {{"GetAINativeData", reinterpret_cast<void*>(Answer)}};
  }
  File pdf_ = "%PDF-1";
};

TEST_F(IllustratorPdf, FollowsTheModulesAnswer) {
  using Case = std::tuple<std::int32_t, std::uint32_t, FilterId, Verdict, const wchar_t*>;
  const wchar_t* const named = L"a.b/c.Pdf";
  const Case CASES[] = {
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
  for (const auto& [result, flags, requested, verdict, path] : CASES) {
    theModule.result = result;
    theModule.flags = flags;
    pdf_.requested = requested;
    pdf_.path = path;
    EXPECT_EQ(AskNow(pdf_), verdict) << result << ' ' << flags << ' ' << requested;
  }
  EXPECT_EQ(theModule.calls, static_cast<int>(std::size(CASES)));
  EXPECT_EQ(TheMachine().calls[Call::LOAD_MODULE], theModule.calls);
  EXPECT_EQ(TheMachine().calls[Call::UNLOAD_MODULE], theModule.calls);
}

TEST_F(IllustratorPdf, IsAskedWithTheRecordThatTheModuleKnows) {
  theModule.flags = 0x02;
  theModule.insert = [](AINativeDataQuery* query) {
    EXPECT_STREQ(query->path, L"sample");
    EXPECT_EQ(query->zeroAt8 | query->zeroAt16 | query->zeroAt24, 0u);
    EXPECT_EQ(query->zeroAt40 | query->zeroAt64, 0u);
    EXPECT_TRUE(query->oneAt28 == 1 && *query->one == 1);
    const auto [sentinel, count] = PartsOf(query);
    EXPECT_EQ(count, 0u);
    for (const auto* link : {sentinel->left, sentinel->parent, sentinel->right}) {
      EXPECT_EQ(link, sentinel);
    }
    EXPECT_TRUE(sentinel->color == 1 && sentinel->isNil == 1);
  };
  EXPECT_EQ(AskNow(pdf_), 1);
  EXPECT_EQ(theModule.calls, 1);
}

// The address sanitizer's build sees what is not released, or twice. The lengths decide where a
// string lies in the tree.
TEST_F(IllustratorPdf, ReleasesTheStringsThatTheModuleLeaves) {
  theModule.insert = [](AINativeDataQuery* query) {
    ModuleSetNode* const sentinel = PartsOf(query).sentinel;
    for (const std::size_t size : {7U, 8U, 0U, 2'046U, 2U, 36U, 2'047U, 1U, 9'000U}) {
      ModuleSetNode** link = &sentinel->parent;
      while ((*link)->isNil == 0) {
        link = size < (*link)->value.size ? &(*link)->left : &(*link)->right;
      }
      InsertString(*link, sentinel, std::u16string(size, u's'));
    }
  };
  EXPECT_EQ(AskNow(pdf_), 0);
  EXPECT_EQ(TheMachine().keptModules, 0);
  theModule.throws = true;
  EXPECT_THROW(AskNow(pdf_), std::runtime_error);
  EXPECT_EQ(TheMachine().keptModules, 1) << "the exception is the module's";
}

TEST_F(IllustratorPdf, LooksAtTheNameBeforeTheModuleCanChangeIt) {
  theModule.flags = 0x10;
  theModule.insert = [](AINativeDataQuery* query) {
    std::wcscpy(const_cast<wchar_t*>(query->path), L"module");
  };
  pdf_.path = L"before.pdf";
  EXPECT_EQ(AskNow(pdf_), 1);
  EXPECT_EQ(pdf_.path.substr(0, 6), L"module");
}

TEST_F(IllustratorPdf, ReleasesLopsidedSetsWithoutAStack) {
  for (const auto side : {&ModuleSetNode::left, &ModuleSetNode::right}) {
    theModule.insert = [side](AINativeDataQuery* query) {
      ModuleSetNode* const sentinel = PartsOf(query).sentinel;
      ModuleSetNode** link = &sentinel->parent;
      for (int i = 0; i < 200'000; ++i) link = &(InsertString(*link, sentinel, u"")->*side);
    };
    EXPECT_EQ(AskNow(pdf_), 0);
  }
}

TEST_F(IllustratorPdf, IsAYesWithoutAFolderOfFilters) {
  TheMachine().filtersDir = L"";
  EXPECT_EQ(AskNow(pdf_), 1);
  EXPECT_EQ(theModule.calls, 0);
  EXPECT_EQ(TheMachine().calls[Call::UNLOAD_MODULE], 1) << "though nothing was loaded";
}

TEST_F(IllustratorPdf, IsAYesWhenMemoryRunsOutOnTheWayToTheModule) {
  TheMachine().files[L"pdf"] = pdf_.bytes;
  int yes = 0;
  bool hasFailed = true;
  for (int nth = 1; hasFailed; ++nth) {
    theModule.calls = 0;
    const memory_host::FailingAllocation failing(nth);
    const int answer = CheckOneFilter(L"pdf", ILLUSTRATOR_PDF, 0);
    hasFailed = failing.HasFailed();
    EXPECT_TRUE(hasFailed || theModule.calls == 1);
    EXPECT_TRUE(answer == 0 || theModule.calls == 0) << "the module refuses the file";
    EXPECT_EQ(TheMachine().OpenObjects(), 0);
    yes += answer;
  }
  EXPECT_GT(yes, 0);
}

TEST_F(IllustratorPdf, DoesNotLoadTheModuleInVain) {
  pdf_.requested = ILLUSTRATOR_PDF;
  EXPECT_EQ(AskNow(pdf_), 1);
  pdf_.bytes = "%PDF-";
  EXPECT_EQ(AskNow(pdf_), 0);
  const std::string bytes = "%PDF-1";
  ProbeContext probe = ProbeOf(bytes);
  EXPECT_EQ(DetectIllustratorPdf(&probe), 1);
  EXPECT_EQ(TheMachine().calls[Call::LOAD_MODULE], 0);
  probe.path = L"";  // is a path
  EXPECT_EQ(DetectIllustratorPdf(&probe), 0);
  EXPECT_EQ(TheMachine().calls[Call::LOAD_MODULE], 1);
}

// The Illustrator row asks the same question first, and steps aside when the answer is yes.
TEST_F(IllustratorPdf, DecidesForTheIllustratorRow) {
  const File document = "%PDF-1\nA&L %%BoundingBox:";
  theModule.flags = 0x02;
  EXPECT_EQ(AskNow(document, DetectIllustrator), 0);
  theModule.flags = 0;
  EXPECT_EQ(AskNow(document, DetectIllustrator), 1);
  EXPECT_EQ(AskNow("\r\n", DetectIllustrator), 0);
  EXPECT_EQ(theModule.calls, 2);
}

TEST(Budi, IsWhatTheGraphicsLibrarySays) {
  for (const bool answer : {true, false}) {
    LayOut("\0any\0bytes");
    std::string seen;
    TheMachine().isBudi = [&](const std::string& bytes) {
      seen = bytes;
      return answer;
    };
    EXPECT_EQ(TypeScoutFile(L"sample"), answer ? 0x0713 : 0);
    EXPECT_EQ(seen, "\0any\0bytes"s);
    EXPECT_EQ(CheckOneFilter(L"sample", 0x0701, 0), answer);
    EXPECT_EQ(CheckOneFilter(L"sample", 0x0702, 0), answer);
  }
}

}  // namespace
}  // namespace typescout::tests
