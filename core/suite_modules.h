// The modules of the suite that rows ask, and the function that answers.
#ifndef TYPESCOUT_CORE_SUITE_MODULES_H
#define TYPESCOUT_CORE_SUITE_MODULES_H

namespace typescout {

struct SuiteModule {
  const wchar_t* name;
  const char* function;
};

// Beside the library. int (const wchar_t* path): positive for a camera's raw picture.
inline constexpr SuiteModule CAMERA_RAW_MODULE = {L"DCRaw", "CheckForRaw"};
// In the folder of filters. detectors/postscript/ai_native_data.h declares the function.
inline constexpr SuiteModule PDF_MODULE = {L"TvnPDFImport", "GetAINativeData"};

}  // namespace typescout

#endif  // TYPESCOUT_CORE_SUITE_MODULES_H
