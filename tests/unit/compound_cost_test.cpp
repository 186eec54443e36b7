// The cost of documents that are made to be slow, counted in reads, bytes and memory.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>

#include "host/compound/check.h"
#include "host/compound/reader.h"
#include "host/memory/failing_allocation.h"
#include "host/owners.h"

namespace typescout::tests {
namespace {

using Number = std::uint32_t;
constexpr Number END = 0xFFFFFFFE;
constexpr Number FREE = 0xFFFFFFFF;
constexpr Number MILLION = 1'000'000;

// An entry of the directory: a stream, by default with a short name that no row asks for.
struct Entry {
  std::string_view name = "x";
  Number right = FREE, first = END, size = 0;
};

constexpr Number SOME = 0xFFFFFFFF;  // at least one byte
constexpr Number InOrderInDirectory(Number sector) { return sector; }

// A document of version 3, described by functions: sectors of 512 bytes, numbered from the first
// behind the allocation table and the DIFAT. The directory begins in sector 0.
struct Shape {
  const char* what;
  Number sectors;
  Number (*next)(Number sector);  // in its chain
  Entry (*entry)(Number number);  // but not of the root, number 0, whose child is number 1
  Number readable;                // bytes of the stream "WordDocument"
  Number (*place)(Number sector) = InOrderInDirectory;
  Number miniStream = END, miniTable = END;  // their first sectors
  bool difatIsCircle = false;
};

struct Cost {
  std::uint64_t reads = 0, bytes = 0;
};

// Computes the document's bytes as they are read, and counts.
class ComputedSource final : public compound::ByteSource {
 public:
  ComputedSource(const Shape& shape, Cost* cost)
      : shape_(shape),
        cost_(cost),
        table_(shape.sectors / 120 + 1),
        difat_(table_ > 109 ? (table_ - 109) / 127 + 1 : 0),
        start_(table_ + difat_) {}

  std::size_t ReadAt(std::uint64_t offset, void* bytes, std::size_t count) const override {
    ++cost_->reads;
    cost_->bytes += count;
    for (std::size_t i = 0; i < count; i += 4) {
      const Number word = Word(offset + i);
      std::memcpy(static_cast<char*>(bytes) + i, &word, std::min<std::size_t>(4, count - i));
    }
    return count;
  }
  std::uint64_t size() const override { return 512 * (std::uint64_t{1} + start_ + shape_.sectors); }

 private:
  Number Place(Number sector) const { return sector < END ? start_ + sector : sector; }

  Number Word(std::uint64_t offset) const {
    const auto word = static_cast<Number>(offset % 512 / 4);
    if (offset < 512) return HeaderWord(word);
    const auto sector = static_cast<Number>(offset / 512 - 1);
    if (sector < table_) {
      const Number number = 128 * sector + word;
      return number < start_ ? FREE : Place(shape_.next(number - start_));
    }
    if (sector < start_) {
      if (word == 127) return shape_.difatIsCircle ? sector : sector + 1;
      return TableSector(109 + 127 * (sector - table_) + word);
    }
    return EntryWord(4 * shape_.place(sector - start_) + word / 32, word % 32);
  }
  Number TableSector(Number index) const { return index < table_ ? index : FREE; }
  Number HeaderWord(Number word) const {
    constexpr Number START[] = {0xE011CFD0, 0xE11AB1A1, 0, 0, 0, 0, 0x0003003E, 0x0009FFFE, 6};
    if (word < std::size(START)) return START[word];
    if (word == 12) return start_;
    if (word == 14) return 4096;
    if (word == 15) return Place(shape_.miniTable);
    if (word == 17) return difat_ > 0 ? table_ : END;
    return word < 19 ? 0xFFFFFFFF : TableSector(word - 19);  // counts far too high
  }
  Number EntryWord(Number number, Number word) const {
    const Entry entry =
        number == 0 ? Entry{"Root Entry", FREE, shape_.miniStream, 0} : shape_.entry(number);
    const auto letter = [&](std::size_t i) {
      return i < entry.name.size() ? static_cast<Number>(entry.name[i]) : 0;
    };
    if (word < 16) return letter(2 * word) | letter(2 * word + 1) << 16;
    const auto nameSize = static_cast<Number>(2 * entry.name.size() + 2);
    if (word == 16) return nameSize | (number == 0 ? 5u : 2u) << 16;
    if (word == 17) return FREE;
    if (word == 18) return entry.right;
    if (word == 19) return number == 0 ? 1 : FREE;
    if (word == 29) return Place(entry.first);
    return word == 30 ? entry.size : 0;
  }

  Shape shape_;
  Cost* cost_;
  Number table_, difat_, start_;  // how many of the former; the first sector behind both
};

Number InOrder(Number sector) { return sector + 1; }
Number InOrderBehindDirectory(Number sector) { return sector == 0 ? END : sector + 1; }
// Of the next sector, each in turn, another sector of the table tells.
Number Jump(Number sector) { return sector == 0 ? END : (sector + 345'679) % (4 * MILLION); }
// The same within what the reader keeps of the table.
Number JumpNearby(Number sector) { return sector == 0 ? END : sector % 12'000 + 4'001; }
// 65,536 sectors of the directory in disorder, and the place of each in the chain.
Number JumpInDirectory(Number sector) { return (sector + 40'503) % 65'536; }
Number PlaceInDirectory(Number sector) { return sector * 55'623 % 65'536; }

Entry List(Number number) {
  if (number == 1) return {.name = "WordDocument", .right = 2, .first = 9, .size = 60'000};
  return {.name = "x", .right = number + 1};
}
// A directory of 800 sectors, each followed by one of a stream, as when streams are added by turns.
Number EverySecond(Number sector) { return sector == 1'598 ? END : sector + 2; }
Number PlaceOfEverySecond(Number sector) { return sector / 2; }
Entry ListWithLastFound(Number number) {
  if (number == 3'199) return {.name = "WordDocument", .first = 1'601, .size = 60'000};
  return {.name = "x", .right = number + 1};
}

Entry LongStream(Number) { return {.name = "WordDocument", .first = 5, .size = 0xFFFFFFFF}; }
Entry FarShortStream(Number) { return {.name = "WordDocument", .first = 800'000, .size = 64}; }
Entry FarthestShortStream(Number) {
  return {.name = "WordDocument", .first = 199 * MILLION, .size = 64};
}

TEST(CompoundCost, IsBoundedForAnyDocument) {
  constexpr std::uint64_t MOST_READS = 2'000;
  constexpr std::uint64_t MOST_BYTES = 7 * MILLION;
  constexpr std::size_t MOST_MEMORY = MILLION;
  constexpr Number DIRECTORY = 65'536;
  constexpr Number LARGE = 25 * MILLION;
  const Shape SHAPES[] = {
      {"a large directory in disorder", DIRECTORY, JumpInDirectory, List, SOME, PlaceInDirectory},
      {"a large directory in order", DIRECTORY, InOrder, List, 50'000},
      {"a directory between streams", DIRECTORY, EverySecond, ListWithLastFound, 50'000,
       PlaceOfEverySecond},
      {"a stream that jumps", 4 * MILLION, Jump, LongStream, 50'000},
      {"a mini stream that jumps", LARGE, Jump, FarShortStream, 0, InOrderInDirectory, 1, 2},
      {"one that jumps nearby", LARGE, JumpNearby, FarShortStream, 0, InOrderInDirectory, 1, 2},
      {"a large mini stream", 4 * MILLION, InOrderBehindDirectory, FarShortStream, 64,
       InOrderInDirectory, 1, 1},
      {"a mini stream without end", LARGE, InOrderBehindDirectory, FarthestShortStream, 0,
       InOrderInDirectory, 1, 1},
      {"a circular DIFAT", 4'000 * MILLION, Jump, LongStream, 512, InOrderInDirectory, END, END,
       true},
  };
  for (const Shape& shape : SHAPES) {
    Cost cost;
    std::string content(50'000, '\0');
    std::uint32_t readable = 0;
    const std::size_t before = memory_host::AllocatedBytes();
    {
      InterfaceOwner<IStorage> storage;
      auto source = std::make_unique<ComputedSource>(shape, &cost);
      ASSERT_EQ(compound::Open(std::move(source), storage.Receive()), S_OK) << shape.what;
      for (const wchar_t* name : {L"ScriptoraDesk_MAIN", L"ScriptoraDesk_MAIN", L"Contents",
                                  L"WordDocument", L"WordDocument"}) {
        InterfaceOwner<IStream> stream;
        if (storage->OpenStream(name, nullptr, STGM_READ, 0, stream.Receive()) == S_OK) {
          EXPECT_EQ(stream->Read(content.data(), 50'000, &readable), S_OK) << shape.what;
        }
      }
    }
    const std::size_t memory = memory_host::AllocatedBytes() - before;
    EXPECT_TRUE(shape.readable == SOME ? readable > 0 : readable == shape.readable)
        << shape.what << ": " << readable;
    EXPECT_LE(cost.reads, MOST_READS) << shape.what;
    EXPECT_LE(cost.bytes, MOST_BYTES) << shape.what;
    EXPECT_LE(memory, MOST_MEMORY) << shape.what;

    // The check of the structure costs in proportion to the file's size up to 2 GB and refuses
    // more.
    if (shape.sectors > 1U << 22) {
      Cost ofCheck;
      EXPECT_FALSE(compound::IsSound(std::make_unique<ComputedSource>(shape, &ofCheck)));
      EXPECT_EQ(ofCheck.reads, 1u) << shape.what;
    }
  }
}

}  // namespace
}  // namespace typescout::tests
