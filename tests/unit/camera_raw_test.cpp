// The camera-raw row, which asks a module.
#include <gtest/gtest.h>

#include <string>

#include "detectors/raster/raster.h"
#include "host/memory/memory_host.h"
#include "tests/samples/sample.h"
#include "tests/support/ask.h"

namespace typescout::tests {
namespace {

using memory_host::Call;
using memory_host::TheMachine;

struct DecoderError {};

int answer = 0;
std::wstring askedPath;

int Answer(const wchar_t* path) {
  askedPath = path;
  return answer;
}
int Throw(const wchar_t* /*path*/) { throw DecoderError(); }

class CameraRaw : public testing::Test {
 protected:
  CameraRaw() { askedPath.clear(); }
  ~CameraRaw() override { EXPECT_EQ(TheMachine().OpenObjects(), 0); }

  static std::int32_t AskModule(const std::wstring& path, int (*function)(const wchar_t*),
                                const char* functionName = "CheckForRaw") {
    const Sample sample = {
        .name = "raw", .detector = DetectCameraRaw, .bytes = "raw", .verdict = NO, .path = path};
    LayOut(sample);
    TheMachine().modules[L"DCRaw"][functionName] = reinterpret_cast<void*>(function);
    return AskAboutHead(DetectCameraRaw, sample, sample.bytes.size());
  }
};

TEST_F(CameraRaw, TakesAPositiveAnswerAsYes) {
  for (const int value : {2, 1, 0, -1}) {
    answer = value;
    EXPECT_EQ(AskModule(L"folder.zrf/photo", Answer), value > 0 ? 1 : 0) << value;
    EXPECT_EQ(askedPath, L"folder.zrf/photo");
  }
}

TEST_F(CameraRaw, LeavesTechnicalDrawingsAlone) {
  answer = 1;
  for (const wchar_t* path : {L"a.zrf", L"a.ZRW", L"a.b.Zr4", L".zrf"}) {
    EXPECT_EQ(AskModule(path, Answer), 0) << path;
    EXPECT_EQ(TheMachine().calls[Call::LOAD_MODULE], 0) << path;
  }
  for (const wchar_t* path : {L"a.zrf.cr2", L"a.zr", L"a.zrf4", L"a.zr5", L"zrf", L""}) {
    EXPECT_EQ(AskModule(path, Answer), 1) << path;
  }
}

TEST_F(CameraRaw, IsNoWithoutTheFunctionOrAPath) {
  answer = 1;
  EXPECT_EQ(AskModule(L"a.cr2", Answer, "CheckForRAW"), 0);
  EXPECT_EQ(TheMachine().calls[Call::FIND_SYMBOL], 1);
  const ProbeContext probe = {};
  EXPECT_EQ(DetectCameraRaw(&probe), 0);
}

TEST_F(CameraRaw, ReleasesTheModuleWhenItThrows) {
  EXPECT_THROW(AskModule(L"a.cr2", Throw), DecoderError);
  EXPECT_EQ(TheMachine().loadedModules, 0);
}

}  // namespace
}  // namespace typescout::tests
