// slow_heads [STEPS]: searches for heads that make a row slow.
//
// For each row that walks or searches the head, by hill climbing over heads made of pieces that the
// row knows: an opening, two bodies that are repeated, and a closing. Prints the slowest head found
// for each row, and for a scan of all rows, with its time. Times are CPU times on an idle machine;
// STEPS (300) is how many heads each of the eight climbs tries.
#include <ctime>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "core/registry.h"
#include "host/memory/memory_host.h"
#include "typescout/typescout.h"

namespace {

using namespace std::string_literals;

constexpr int WHOLE_SCAN = -1;
constexpr const wchar_t* PATH = L"head";

struct Target {
  std::vector<int> filters;
  std::vector<std::string> pieces;
};

const std::vector<Target>& Targets() {
  const std::string x160(160, 'x');
  static const std::vector<Target> TARGETS = {
      {{0x0509, 0x050A, 0x0503, 0x0324, WHOLE_SCAN},
       {"%!PS-Adobe EPSF\n",
        "%!PS\n",
        "\xC5\xD0\xD3\xC6",
        "%%BoundingBox:",
        "%%BoundingBox",
        "%%Creator:",
        "%%Creator",
        "%%EndSetup",
        "%%EndSetu",
        "Adobe Illustrator",
        "Adobe Illustrato",
        "Adobe_Illustrator",
        "Adobe_Illustrato",
        "A&L",
        "A&",
        "A",
        "%",
        ":",
        ".",
        "7.0",
        "9.0",
        "\n",
        "\r\n",
        "\0"s,
        "o",
        "x",
        x160,
        "EPSF",
        "\x1B%-12345X@PJL\n",
        "@PJL ENTER LANGUAGE=POSTSCRIPT\n",
        "PlateFile",
        "Tavon PIXEL-FORGE",
        "Tavon PIXEL-FORG",
        " "}},
      {{0x080E},
       {"\xAE", "\xAF", "TS", "A", "AB", " ", ",", "x", "\0"s, "\xAEMD", "\xAETS", "\xAE ",
        "\xAF\xAE"}},
      {{0x0305, 0x0616},
       {"GIF89a\0\0\0\0\0\0\0"s, "GIF89a\0\0\0\0\x87\0\0"s, "!\xFE\0"s, "!\xF9\4\0\0\0\0\0"s,
        ",\0\0\0\0\0\0\0\0\0\2\0"s, ",\0\0\0\0\0\0\0\0\x87\2\0"s, "!\xFF\x0BNETSCAPE2.0\0"s, "!",
        "\1x", "\0"s, ";", "\x02", "\xFF"}},
      {{0x0306},
       {"\xFF\xD8", "\xFF\xD9", "\xFF\1", "\xFF\xDF\0\0\0"s, "\xFF\xDD\0\0\0\0"s, "\xFF\xE0\0\2"s,
        "\xFF\xE0\0\0"s, "\xFF"}},
      {{0x0500},
       {"\0\x20"s, "\0\x40"s, "\x10\x40", "\x60\x20", "\x70\x20", "\0\x3F\0\0"s, "\0\x21x\0"s, " ",
        "BEGMF"}},
      {{0x0501}, {"IN",      "SP",     "PU",     "PE",   "LB",     "DT",        "DF",      ";",
                  ",",       " ",      "\x03",   "\x1B", "\x1B.@", "\x1B.P123", "\x1B%-1", "\x1B*",
                  "\x1B%0B", "\x1B.)", "\x1B.(", "T",    ":",      "1",         "\x11",    "x"}},
      {{0x0505},
       {"\1\0"s, "\2\0\0"s, "\2\2\1\x7E", "\2\2\1\0"s, "\2\1\1", "\2\2\4\x7E", "\1\1x", "\1\xFF",
        "\2"}},
      {{0x0510}, {"0", " ", "\r\n", "\n", "SECTION", "x", "9"}},
      {{0x0523},
       {"Visio (TM) Drawing\r\n", "Visio (TM) Drawing\r", "\0"s, std::string(512, '\0'), "x"}},
      {{0x0541, 0x0615}, {"<svg", "<sv", "<", "<title", "<TITLE", "<title>", "x", " ", "\n"}},
      {{0x0903, 0x0901, 0x0902},
       {"x", "\r\n", "\r", "\n", "\x80", "\xE1", "\xF0", "\1", "\x1A", std::string(101, 'x'),
        "{\\rtf"}},
      {{0x0317}, {"\0"s, "\1x", "\xFF", "\x80", "PNTG", std::string(512, '\0')}},
  };
  return TARGETS;
}

// A head, as indices into its target's pieces.
struct Head {
  using Pieces = std::vector<std::size_t>;
  std::array<Pieces, 4> parts;      // opening, first body, second body, closing
  std::size_t firstBodyShare = 50;  // per cent of the bytes between opening and closing
};

std::string Join(const std::vector<std::string>& pieces, const Head::Pieces& chosen) {
  std::string joined;
  for (const std::size_t piece : chosen) joined += pieces[piece];
  return joined;
}

void Fill(std::string* bytes, const std::string& unit, std::size_t size) {
  while (!unit.empty() && bytes->size() + unit.size() <= size) *bytes += unit;
}

std::string Bytes(const std::vector<std::string>& pieces, const Head& head) {
  const std::string closing = Join(pieces, head.parts[3]);
  const std::size_t end =
      TYPESCOUT_HEAD_CAPACITY - std::min<std::size_t>(closing.size(), TYPESCOUT_HEAD_CAPACITY);
  std::string bytes = Join(pieces, head.parts[0]);
  const std::size_t middle =
      bytes.size() + (end - std::min(end, bytes.size())) * head.firstBodyShare / 100;
  Fill(&bytes, Join(pieces, head.parts[1]), middle);
  Fill(&bytes, Join(pieces, head.parts[2]), end);
  return bytes + closing;
}

std::int64_t CpuNanoseconds() {
  timespec now;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return now.tv_sec * std::int64_t{1'000'000'000} + now.tv_nsec;
}

// What one question about the head takes: the least of several times, in nanoseconds.
std::int64_t Cost(int filter, const std::string& bytes) {
  memory_host::TheMachine().files[PATH] = bytes;
  std::int64_t least = std::numeric_limits<std::int64_t>::max();
  for (int round = 0; round < 5; ++round) {
    const std::int64_t start = CpuNanoseconds();
    if (filter == WHOLE_SCAN) {
      TypeScoutFile(PATH);
    } else {
      CheckOneFilter(PATH, filter, 0);
    }
    least = std::min(least, CpuNanoseconds() - start);
  }
  return least;
}

Head Changed(Head head, std::size_t pieceCount, std::mt19937* random) {
  constexpr std::size_t LONGEST = 8;
  const auto below = [random](std::size_t bound) { return (*random)() % bound; };
  Head::Pieces& part = head.parts[below(head.parts.size())];
  switch (below(4)) {
    case 0:
      if (part.size() < LONGEST) {
        part.insert(part.begin() + static_cast<std::ptrdiff_t>(below(part.size() + 1)),
                    below(pieceCount));
      }
      break;
    case 1:
      if (!part.empty()) part.erase(part.begin() + static_cast<std::ptrdiff_t>(below(part.size())));
      break;
    case 2:
      if (!part.empty()) part[below(part.size())] = below(pieceCount);
      break;
    default:
      head.firstBodyShare = below(101);
  }
  return head;
}

std::string Printable(const std::string& bytes) {
  std::string text;
  for (const char c : bytes) {
    std::array<char, 8> code;
    std::snprintf(code.data(), code.size(), "\\%03o",
                  static_cast<unsigned>(static_cast<std::uint8_t>(c)));
    text += c < ' ' || c > '~' ? code.data() : std::string(1, c);
  }
  return text;
}

void Climb(int filter, const std::vector<std::string>& pieces, int steps) {
  constexpr int CLIMBS = 8;
  std::mt19937 random(1);
  std::int64_t slowest = -1;
  Head worst;
  for (int climb = 0; climb < CLIMBS; ++climb) {
    Head head;
    head.parts[0] = {0};
    for (int change = 0; change < 10; ++change) head = Changed(head, pieces.size(), &random);
    std::int64_t cost = Cost(filter, Bytes(pieces, head));
    for (int step = 0; step < steps; ++step) {
      Head other = head;
      for (std::size_t changes = 1 + random() % 3; changes > 0; --changes)
        other = Changed(other, pieces.size(), &random);
      const std::string bytes = Bytes(pieces, other);
      if (Cost(filter, bytes) < cost) continue;
      const std::int64_t otherCost =
          Cost(filter, bytes);  // again: the first may have been disturbed
      if (otherCost < cost) continue;
      head = other;
      cost = otherCost;
    }
    if (cost <= slowest) continue;
    slowest = cost;
    worst = head;
  }
  std::printf(filter == WHOLE_SCAN ? "scan  " : "0x%04X", static_cast<unsigned>(filter));
  std::printf(" %8.1f us ", static_cast<double>(Cost(filter, Bytes(pieces, worst))) / 1000);
  for (const Head::Pieces& part : worst.parts)
    std::printf(" \"%s\"", Printable(Join(pieces, part)).c_str());
  std::printf(" %zu %%\n", worst.firstBodyShare);
  std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
  const int steps = argc > 1 ? std::atoi(argv[1]) : 300;
  for (const Target& target : Targets()) {
    for (const int filter : target.filters) Climb(filter, target.pieces, steps);
  }
  return 0;
}
