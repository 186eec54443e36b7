#include "tests/samples/sample.h"

#include <algorithm>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "core/registry.h"

namespace typescout::tests {
namespace {

constexpr const char* TABLES[] = {
#include "sample_tables.inc"
};

// The characters that a text in quotation marks stands for.
std::string Unescaped(std::string_view text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\') {
      bytes += text[i];
    } else if (text[++i] == 'x') {
      bytes += static_cast<char>(std::stoi(std::string(text.substr(i + 1, 2)), nullptr, 16));
      i += 2;
    } else {
      constexpr std::string_view LETTERS = "0nrt\"\\";
      bytes += "\0\n\r\t\"\\"[LETTERS.find(text[i])];
    }
  }
  return bytes;
}

// The words of a line; a text in quotation marks is one, with what follows it up to a space.
std::vector<std::string> Words(const std::string& line) {
  static const std::regex WORD(R"re("(?:[^"\\]|\\.)*"\S*|\S+)re");
  return {std::sregex_token_iterator(line.begin(), line.end(), WORD), {}};
}

class TableReader {
 public:
  std::vector<Sample> Read(const char* table) {
    std::istringstream lines(table);
    for (std::string line; std::getline(lines, line);) {
      if (line.empty() || line.front() == '#') continue;
      try {
        ReadLine(line);
      } catch (const std::logic_error&) {
        throw std::runtime_error("not the line of a sample: " + line);
      }
    }
    return std::move(samples_);
  }

 private:
  void ReadLine(const std::string& line) {
    const std::vector<std::string> words = Words(line);
    if (words[0] == "yes" || words[0] == "no") {
      const File file = ReadFile({words.begin() + 1, words.end()});
      const Verdict verdict = words[0] == "yes" ? YES : NO;
      samples_.push_back({file, label_ + ": " + line.substr(4), filter_, detector_, verdict});
    } else if (words.at(1) == "=") {
      names_[words[0]] = ReadFile({words.begin() + 2, words.end()}).bytes;
    } else {
      filter_ = static_cast<FilterId>(std::stoi(words[0], nullptr, 16));
      label_ = line.substr(5);
      const int row = FindRegistryIndex(filter_);
      if (row < 0) throw std::invalid_argument("no row");
      detector_ = DetectorRegistry[static_cast<std::size_t>(row)].detect;
    }
  }

  File ReadFile(std::vector<std::string> words) const {
    File file = "";
    std::string* bytes = &file.bytes;
    std::size_t at = 0;
    words.emplace_back();  // what follows the last
    for (std::size_t i = 0; i + 1 < words.size(); ++i) {
      const std::string& word = words[i];
      const std::string& next = words[i + 1];
      if (word == "stream") {
        bytes = &file.streams[{next.begin(), next.end()}];
        at = 0;
      } else if (word == "path") {
        file.path = {next.begin(), next.end()};
      } else if (word == "requested" || word == "best") {
        (word == "best" ? file.best : file.requested) =
            static_cast<FilterId>(std::stoi(next, nullptr, 16));
      } else if (word == "size") {
        bytes->resize(at = std::stoul(next));
      } else if (word.front() == '@') {
        at = word == "@end" ? bytes->size() : std::stoul(word.substr(1));
        continue;
      } else {
        const std::string piece = Piece(word);
        *bytes = Patch(std::move(*bytes), at, piece);
        at += piece.size();
        continue;
      }
      ++i;
    }
    return file;
  }

  // A text or a name, as often as it says.
  std::string Piece(const std::string& word) const {
    const bool isText = word.front() == '"';
    const std::size_t end = isText ? word.rfind('"') + 1 : std::min(word.find('*'), word.size());
    const std::string once = isText ? Unescaped(std::string_view(word).substr(1, end - 2))
                                    : names_.at(word.substr(0, end));
    std::string all;
    for (auto count = end < word.size() ? std::stoul(word.substr(end + 1)) : 1; count > 0; --count)
      all += once;
    return all;
  }

  FilterId filter_ = 0;
  Detector detector_ = nullptr;
  std::string label_;
  std::map<std::string, std::string> names_;
  std::vector<Sample> samples_;
};

}  // namespace

const std::vector<Sample>& AllSamples() {
  static const std::vector<Sample> SAMPLES = [] {
    std::vector<Sample> all;
    for (const char* table : TABLES)
      for (Sample& sample : TableReader().Read(table)) all.push_back(std::move(sample));
    return all;
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

}  // namespace typescout::tests
