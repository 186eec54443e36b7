// write_documents FOLDER: writes the samples that are compound documents by the system's own
// functions: as they are, with every stream made long enough to leave the mini stream (and some
// class), and with the class of the suite's drawing objects. 0 when all could be written.
#include <algorithm>
#include <filesystem>
#include <map>
#include <string>

#include "tests/samples/sample.h"
#include "tests/windows/other_program.h"

int main(int argc, char** argv) {
  using namespace typescout::tests;
  if (argc != 2) return 64;
  constexpr std::size_t LONG = 4'096;  // [MS-CFB] 2.2, the cutoff of the mini stream
  constexpr const wchar_t* DRAWING_OBJECT = L"{DE14F420-AC1C-11CE-BE26-DB67235E2689}";
  constexpr const wchar_t* ANOTHER = L"{DE14F420-AC1C-11CE-BE26-DB67235E2688}";
  bool areWritten = true;
  int number = 1000;
  for (const Sample& sample : AllSamples()) {
    if (sample.streams.empty()) continue;
    std::map<std::wstring, std::string> longStreams = sample.streams;
    for (auto& [name, content] : longStreams) {
      content.resize(std::max(content.size(), LONG));
    }
    const std::filesystem::path folder = std::filesystem::path(argv[1]) / std::to_string(++number);
    for (const char* kind : {"short", "long", "object"}) {
      std::filesystem::create_directories((folder / kind / sample.path).parent_path());
    }
    const auto write = [&](const char* kind, const wchar_t* rootClass, const auto& streams) {
      areWritten = WriteDocument(folder / kind / sample.path, rootClass, streams) && areWritten;
    };
    write("short", L"", sample.streams);
    write("long", ANOTHER, longStreams);
    write("object", DRAWING_OBJECT, sample.streams);
  }
  return areWritten ? 0 : 1;
}
