// The six functions over the in-memory host: what is read, opened, rewritten and given back. And
// whatever fails, at whatever moment: the answer is the right one, a clean no, or the one
// exception, and nothing stays open.
#include "typescout/typescout.h"

#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "core/file_context.h"
#include "detectors/vector/vector.h"
#include "host/memory/failing_allocation.h"
#include "tests/support/ask.h"

namespace typescout::tests {
namespace {

using memory_host::Call;
using memory_host::TheMachine;

const wchar_t* const PATH = L"file";
wchar_t* const MUTABLE_PATH = const_cast<wchar_t*>(PATH);

constexpr CLSID CLASS = {
    0xDE14F420, 0xAC1C, 0x11CE, {0xBE, 0x26, 0xDB, 0x67, 0x23, 0x5E, 0x26, 0x89}};

const std::string PNG = "\x89PNG\r\n\x1A\n"s;
const std::string TIFF = "II*\0"s;
const std::string WEBP = "RIFF\0\0\0\0WEBPV"s;
const std::string DOCUMENT = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"s;
const std::string WORD = PadTo(1'536, "\xEC\xA5\xC1\0"s);

class EntryPoints : public OnTheMachine {
 protected:
  static unsigned char* Buffer(std::string& bytes) {
    return reinterpret_cast<unsigned char*>(bytes.data());
  }
  // Empties the machine, and lays out a drawing object's document, which a Word row accepts too.
  static void LayOutDrawingObject(const std::vector<memory_host::Fault>& faults = {}) {
    memory_host::Reset();
    TheMachine().files[PATH] = DOCUMENT;
    TheMachine().documents[PATH] = {.classId = CLASS, .streams = {{L"WordDocument", WORD}}};
    TheMachine().faults = faults;
  }
};

TEST_F(EntryPoints, KnowWhichIdentifiersAreValid) {
  constexpr int ROWS = 108;  // a new row is one more; no other test says how many there are
  EXPECT_EQ(GetNumTypeScoutProcs(), ROWS);
  // Those without a row, and those of rows that accept no sample; the samples or the golden table
  // name the others.
  const int VALID[] = {0x3001, 0x7FFFFFFF, 0x050C, 0x0518, 0x0519, 0x0520, 0x0521, 0x0524,
                       0x053C, 0x053D,     0x053E, 0x0543, 0x0706, 0x0708, 0x0709, 0x0800,
                       0x080A, 0x0700,     0x0707, 0x0713, 0x0701, 0x0702, 0x0337, 0x0321,
                       0x0325, 0x0610,     0x060E, 0x0516, 0x0512, 0x0517, 0x053B};
  for (const int id : VALID) EXPECT_EQ(CheckValidFilterID(id), 1) << std::hex << id;
  for (const int id : {0x3000, 0, INT32_MIN}) EXPECT_EQ(CheckValidFilterID(id), 0) << id;
  int validBelow0x1000 = 0;
  for (int id = -0x1000; id < 0x1000; ++id) validBelow0x1000 += CheckValidFilterID(id);
  EXPECT_EQ(validBelow0x1000, ROWS - 1 + 15) << "0x0339 has two rows, fifteen have none";
}

TEST_F(EntryPoints, AskTheRowsInOrder) {
  TheMachine().files[PATH] = TIFF;
  EXPECT_EQ(TypeScoutFile(PATH), 0x0306);
  EXPECT_EQ(CheckOneFilter(PATH, 0x0304, 0), 1);
  EXPECT_EQ(CheckOneFilter(PATH, 0x0322, 0), 0);
  EXPECT_EQ(CheckOneFilter(PATH, 0, 0), 1) << "nothing found is what was asked for";
}

// Also when nothing matches, but not when the call ends before the scan.
TEST_F(EntryPoints, RewriteIdsIntoIndices) {
  TheMachine().files = {{L"tiff", TIFF}, {L"webp", WEBP}};
  const std::tuple<const wchar_t*, std::vector<int>, int, std::vector<int>> CASES[] = {
      {L"tiff", {0x0304, 0x0306}, 0x0304, {30, 5}},
      {L"webp", {0x0306, 0x1234, 0x0339, 0x0700}, 0x0339, {5, 0, 41, 0}},
      {L"webp", {0x0306, 0x0305}, 0, {5, 4}},
      {L"missing", {0x0306}, 0, {0x0306}}};
  for (auto [path, ids, answer, indices] : CASES) {
    const int count = static_cast<int>(ids.size());
    EXPECT_EQ(CheckFiltersFromIDList(path, ids.data(), count, 0, nullptr, 0), answer);
    EXPECT_EQ(ids, indices);
  }
}

TEST_F(EntryPoints, TakeIndicesAsTheyAre) {
  TheMachine().files[PATH] = WEBP;
  std::vector<int> indices = {-1, GetNumTypeScoutProcs(), INT32_MAX, 5, 5, 47};
  const std::vector<int> before = indices;
  EXPECT_EQ(CheckFiltersFromList(MUTABLE_PATH, indices.data(), 6, 0, nullptr, 0), 0x0339);
  EXPECT_EQ(indices, before);
  EXPECT_EQ(CheckFiltersFromList(MUTABLE_PATH, indices.data(), 5, 0, nullptr, 0), 0);
}

TEST_F(EntryPoints, TakeAnEmptyList) {
  LayOutDrawingObject();
  int word = 79;
  for (int* const list : {&word, static_cast<int*>(nullptr)}) {
    EXPECT_EQ(CheckFiltersFromIDList(PATH, list, 0, 0, nullptr, 0), 0);
    EXPECT_EQ(CheckFiltersFromList(MUTABLE_PATH, list, -3, 0, nullptr, 0), 0);
  }
  EXPECT_EQ(TheMachine().calls[Call::READ_FILE], 4) << "the head is read all the same";
  EXPECT_EQ(TheMachine().calls[Call::OPEN_STORAGE], 4) << "and the document opened";
}

TEST_F(EntryPoints, FallBackToTheCallersBytes) {
  std::string png = PNG;
  int index = 40;
  const auto check = [&](const wchar_t* path, int length, unsigned char* bytes) {
    return CheckFiltersFromList(const_cast<wchar_t*>(path), &index, 1, length, bytes, 0);
  };
  EXPECT_EQ(check(L"missing", 8, Buffer(png)), 0x0322);
  for (const int length : {8, 7, 0, -1}) {  // bytes beyond the caller's length are not seen
    EXPECT_EQ(check(nullptr, length, Buffer(png)), length == 8 ? 0x0322 : 0) << length;
  }
  EXPECT_EQ(check(nullptr, 8, nullptr), 0);
  for (const int nth : {1, 2}) {  // of the allocations there is but one
    const memory_host::FailingAllocation failing(nth);
    EXPECT_EQ(check(nullptr, 8, Buffer(png)), nth == 1 ? 0 : 0x0322);
  }

  TheMachine().files[PATH] = "something else";
  EXPECT_EQ(check(PATH, 8, Buffer(png)), 0) << "the file's own bytes are used";
  TheMachine().files[PATH] = PNG;
  EXPECT_EQ(check(PATH, -1, Buffer(png)), 0x0322) << "a length that is not needed does not matter";
}

TEST_F(EntryPoints, HeadEndsAtItsCapacityUnlessItIsTheCallers) {
  const auto executable = [](std::size_t size, std::size_t header) {
    const auto low = static_cast<char>(header & 0xFF);
    const auto high = static_cast<char>(header >> 8);
    const std::string bytes = Patch(Patch(Fill(size), 0, "MZ"), 60, std::string{low, high});
    return Patch(bytes, header, "PE");
  };
  for (const std::size_t header : {49'998u, 49'999u}) {  // of the latter the E is not read any more
    TheMachine().files[PATH] = executable(50'001, header);
    EXPECT_EQ(CheckOneFilter(PATH, 0x0312, 0), header == 49'998);
  }
  EXPECT_EQ(AskWithBytes(nullptr, 0x0312, executable(70'000, 60'016)), 0x0312);
}

TEST_F(EntryPoints, GiveUpOnAShortRead) {
  TheMachine().files[PATH] = PNG;
  TheMachine().faults = {{.call = Call::READ_FILE, .nth = 1}};
  EXPECT_EQ(TypeScoutFile(PATH), 0);
  TheMachine().faults = {{.call = Call::READ_FILE, .nth = 2}};
  EXPECT_EQ(AskWithBytes(PATH, 0x0306, TIFF), 0x0306) << "the caller's bytes are used";
}

TEST_F(EntryPoints, TellDrawingObjectsByTheirClass) {
  LayOutDrawingObject();
  EXPECT_EQ(TypeScoutFile(PATH), 0x0706);
  EXPECT_EQ(TheMachine().storageModes, (std::vector<std::uint32_t>{0x20})) << "opened only once";
  EXPECT_EQ(CheckOneFilter(PATH, 0x0706, 0), 0) << "no registry row has it";
  TheMachine().documents[PATH].classId.data4[7] = 0x88;
  EXPECT_EQ(TypeScoutFile(PATH), 0x0814);

  LayOutDrawingObject({{.call = Call::READ_CLASS}});
  EXPECT_EQ(TypeScoutFile(PATH), 0x0814) << "a class that cannot be read is none";
}

TEST_F(EntryPoints, OpenALockedDocumentOnceMore) {
  for (const HRESULT code :
       {STG_E_ACCESSDENIED, STG_E_LOCKVIOLATION, STG_E_INVALIDHEADER, STG_E_INSUFFICIENTMEMORY}) {
    const bool isLocked = code == STG_E_ACCESSDENIED || code == STG_E_LOCKVIOLATION;
    std::vector<std::uint32_t> modes = {0x20};
    if (isLocked) modes.push_back(0x10040);
    // In a scan the class is looked at without a second try, which the rows that follow make.
    for (const bool isScan : {false, true}) {
      LayOutDrawingObject({{.call = Call::OPEN_STORAGE, .code = code}});
      const bool isWord =
          (isScan ? TypeScoutFile(PATH) == 0x0814 : CheckOneFilter(PATH, 0x0814, 0));
      EXPECT_EQ(isWord, isLocked) << std::hex << code;
      EXPECT_EQ(TheMachine().storageModes, modes) << std::hex << code;
    }
  }
}

TEST_F(EntryPoints, CloseTheHandleWithTheContext) {
  TheMachine().openHandles = 1;
  FileContext context;
  context.handle = &context;
}

// The first, second, ... call of a kind fails or throws, or allocation fails, until there is no
// such one.
TEST(Faults, LeaveNothingOpenAndNoWrongAnswer) {
  struct HostError {};
  constexpr std::nullopt_t MEMORY = std::nullopt;
  const std::optional<Call> KINDS[] = {Call::OPEN_FILE,       Call::READ_FILE,
                                       Call::SEEK_FILE,       Call::OPEN_STORAGE,
                                       Call::READ_CLASS,      Call::OPEN_STREAM,
                                       Call::READ_STREAM,     Call::LOAD_MODULE,
                                       Call::IS_STORAGE_FILE, MEMORY};
  for (const Sample& sample : AllSamples()) {
    for (const auto& [isScan, throws] : {std::pair(false, false), {true, false}, {true, true}}) {
      const auto ask = [&] {
        return isScan ? TypeScoutFile(sample.path.c_str())
                      : CheckOneFilter(sample.path.c_str(), sample.filter, sample.requested);
      };
      LayOut(sample);
      const int whole = ask();
      for (const auto& kind : KINDS) {
        int met = 1;
        for (int nth = 1; met >= nth; ++nth) {
          ASSERT_LT(nth, 1'000) << sample.name;
          LayOut(sample);
          if (kind && !throws) TheMachine().faults = {{*kind, nth, STG_E_LOCKVIOLATION}};
          met = 0;
          TheMachine().beforeCall = [&, throws = throws](Call call) {
            if (call == kind && ++met == nth && throws) throw HostError();
          };
          const memory_host::FailingAllocation failing(kind ? 0 : nth);
          try {
            const int answer = ask();
            // A Publisher file that cannot be opened as a compound document goes by its name.
            const bool isAny = isScan || !kind || sample.detector == DetectPublisher;
            EXPECT_TRUE(isAny || answer == 0 || answer == whole) << sample.name;
          } catch (int value) {
            EXPECT_TRUE(kind && value == 0) << sample.name;
          } catch (const HostError&) {
          }
          if (!kind) met = failing.Count();
          ASSERT_EQ(TheMachine().OpenObjects(), 0) << sample.name << ", moment " << nth;
        }
      }
    }
  }
}

}  // namespace
}  // namespace typescout::tests
