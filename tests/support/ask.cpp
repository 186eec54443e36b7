#include "tests/support/ask.h"

#include <algorithm>
#include <memory>

#include "core/file_context.h"

namespace typescout::tests {

void LayOut(const File& file) {
  memory_host::Reset();
  memory_host::Machine& machine = memory_host::TheMachine();
  machine.files[file.path] = file.bytes;
  if (!file.streams.empty()) {
    machine.documents[file.path] = {.classId = {}, .streams = file.streams};
  }
}

std::int32_t AskAboutHead(Detector detector, const File& file, std::size_t headLength) {
  const std::size_t length =
      std::min({headLength, file.bytes.size(), static_cast<std::size_t>(HEAD_CAPACITY)});
  const auto head = std::make_unique<unsigned char[]>(length);
  std::copy_n(file.bytes.begin(), length, head.get());
  FileContext context;
  context.requestedFilterId = file.requested;
  const ProbeContext probe = {
      .head = head.get(),
      .headLength = static_cast<std::int32_t>(length),
      .path = file.path.c_str(),
      .classId = {},
      .storage = context.probed.Document(file.path.c_str(), ProbedFile::WhenLocked::SHARE),
      .file = &context};
  return detector(&probe);
}

std::int32_t Ask(Detector detector, const File& file) {
  LayOut(file);
  const std::int32_t answer = AskAboutHead(detector, file, file.bytes.size());
  EXPECT_EQ(memory_host::TheMachine().OpenObjects(), 0) << file.bytes.substr(0, 60);
  return answer;
}

}  // namespace typescout::tests
