#include "tests/support/ask.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "core/file_context.h"
#include "host/memory/memory_host.h"

namespace typescout::tests {

void LayOut(const Sample& sample) {
  memory_host::Reset();
  memory_host::Machine& machine = memory_host::TheMachine();
  machine.files[sample.path] = sample.bytes;
  if (!sample.streams.empty()) {
    machine.documents[sample.path] = {.classId = {}, .streams = sample.streams};
  }
}

std::int32_t AskAboutHead(Detector detector, const Sample& sample, std::size_t headLength) {
  const std::size_t length =
      std::min({headLength, sample.bytes.size(), static_cast<std::size_t>(HEAD_CAPACITY)});
  const auto head = std::make_unique<unsigned char[]>(length);
  std::copy_n(sample.bytes.begin(), length, head.get());
  FileContext file;
  file.requestedFilterId = sample.requested;
  const ProbeContext probe = {
      .head = head.get(),
      .headLength = static_cast<std::int32_t>(length),
      .path = sample.path.c_str(),
      .classId = {},
      .storage = file.probed.Document(sample.path.c_str(), ProbedFile::WhenLocked::SHARE),
      .file = &file};
  return detector(&probe);
}

std::int32_t Ask(Detector detector, const Sample& sample) {
  LayOut(sample);
  const std::int32_t answer = AskAboutHead(detector, sample, sample.bytes.size());
  EXPECT_EQ(memory_host::TheMachine().OpenObjects(), 0) << sample.name << " left something open";
  return answer;
}

std::int32_t Ask(Detector detector, const std::string& bytes) {
  return Ask(detector,
             Sample{.name = "bytes", .detector = detector, .bytes = bytes, .verdict = NO});
}

}  // namespace typescout::tests
