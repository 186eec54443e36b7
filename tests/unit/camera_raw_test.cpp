// The camera-raw row, which asks a module.
#include <string>

#include "detectors/raster/raster.h"
#include "tests/support/ask.h"
#include "tests/support/on_the_machine.h"

namespace typescout::tests {
namespace {

using memory_host::Call;
using memory_host::TheMachine;

struct DecoderError {};
constexpr int AN_ERROR = 99;

int answer = 0;
std::wstring askedPath;

int Answer(const wchar_t* path) {
  askedPath = path;
  if (answer == AN_ERROR) throw DecoderError();
  return answer;
}

class CameraRaw : public OnTheMachine {
 protected:
  static std::int32_t AskDecoder(const std::wstring& path, int itsAnswer,
                                 const char* functionName = "CheckForRaw") {
    const Sample sample = {
        .name = "raw", .detector = DetectCameraRaw, .bytes = "raw", .verdict = NO, .path = path};
    LayOut(sample);
    TheMachine().modules[L"DCRaw"][functionName] = reinterpret_cast<void*>(Answer);
    answer = itsAnswer;
    askedPath.clear();
    return AskAboutHead(DetectCameraRaw, sample, sample.bytes.size());
  }
};

TEST_F(CameraRaw, TakesAPositiveAnswerAsYes) {
  for (const int value : {2, 1, 0, -1}) {
    EXPECT_EQ(AskDecoder(L"folder.zrf/photo", value), value > 0 ? 1 : 0) << value;
    EXPECT_EQ(askedPath, L"folder.zrf/photo");
  }
  EXPECT_THROW(AskDecoder(L"a.cr2", AN_ERROR), DecoderError);
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
  const ProbeContext probe = {};
  EXPECT_EQ(DetectCameraRaw(&probe), 0);
}

}  // namespace
}  // namespace typescout::tests
