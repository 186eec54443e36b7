#include "tests/samples/sample.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <string_view>

#include "core/registry.h"

namespace typescout::tests {
namespace {

// A byte as a literal writes it.
std::string Printed(unsigned char byte) {
  if (byte == '\\') return "\\\\";
  if (std::isprint(byte) != 0) return {static_cast<char>(byte)};
  if (byte == '\0') return "\\0";
  if (byte == '\r') return "\\r";
  if (byte == '\n') return "\\n";
  char hex[8];
  std::snprintf(hex, sizeof hex, "\\x%02X", byte);
  return hex;
}

// The bytes in brief, on one line: a run as its byte and a count, a long text without its middle.
// No two spaces follow each other and none is at the end: two part the names in the golden table.
std::string Brief(std::string_view bytes) {
  std::string brief;
  while (!bytes.empty()) {
    const std::size_t run = std::min(bytes.find_first_not_of(bytes.front()), bytes.size());
    const std::string byte = Printed(static_cast<unsigned char>(bytes.front()));
    const bool isCounted = run > 3 || (byte == " " && run > 1);
    brief += isCounted ? byte + '{' + std::to_string(run) + '}' : byte;
    bytes.remove_prefix(isCounted ? run : 1);
  }
  if (brief.ends_with(' ')) brief.replace(brief.size() - 1, 1, "\\x20");
  return brief.size() <= 100 ? brief : brief.substr(0, 60) + "..." + brief.substr(brief.size() - 37);
}

std::string Narrow(const std::wstring& text) { return {text.begin(), text.end()}; }

std::string NameOf(const std::string& label, const File& file) {
  std::string name = label + ": " + Brief(file.bytes);
  for (const auto& [stream, content] : file.streams) name += ", " + Narrow(stream) + ": " + Brief(content);
  if (file.path != L"sample") name += ", named " + Narrow(file.path);
  if (file.requested != 0) name += ", requested";
  return name;
}

}  // namespace

void Table::Add(const std::string& label, FilterId filter, const std::vector<File>& accepted, const std::vector<File>& refused) {
  const Detector detector = DetectorRegistry[static_cast<std::size_t>(FindRegistryIndex(filter))].detect;
  for (const File& file : accepted) samples.push_back({file, NameOf(label, file), filter, detector, YES});
  for (const File& file : refused) samples.push_back({file, NameOf(label, file), filter, detector, NO});
}

const std::vector<Sample>& AllSamples() {
  static const std::vector<Sample> SAMPLES = [] {
    Table table;
    for (auto family : {RasterSamples, PostscriptSamples, VectorSamples, MediaSamples, NativeSamples, DocumentSamples}) {
      family(table);
    }
    return table.samples;
  }();
  return SAMPLES;
}

std::string PadTo(std::size_t size, std::string text) {
  text.resize(size);
  return text;
}

std::string Patch(std::string text, std::size_t at, const std::string& patch) {
  text.resize(std::max(text.size(), at + patch.size()));
  return text.replace(at, patch.size(), patch);
}

File Named(std::wstring path, File file) {
  file.path = std::move(path);
  return file;
}

File For(FilterId requested, File file) {
  file.requested = requested;
  return file;
}

std::string CompoundHead() { return PadTo(64, "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"); }

File InStream(const std::wstring& stream, const std::string& content, File head) {
  head.streams[stream] = content;
  return head;
}

}  // namespace typescout::tests
