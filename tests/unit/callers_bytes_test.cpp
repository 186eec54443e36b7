// What the samples cannot lay out of the vector and document rows: a caller's own bytes beside a
// file that opens as a compound document, heads longer than those of files, and no path at all.
#include "tests/samples/sample.h"
#include "tests/support/on_the_machine.h"

namespace typescout::tests {
namespace {

using memory_host::TheMachine;

const wchar_t* const PATH = L"file.pub";

class CallersBytes : public OnTheMachine {
 protected:
  static bool Check(int filterId, const std::string& bytes, const wchar_t* path = PATH) {
    return AskWithBytes(path, filterId, bytes) == filterId;
  }
};

TEST_F(CallersBytes, StandBesideAStream) {
  const std::string record = "\0\0\x02\0......"s;
  EXPECT_FALSE(Check(0x0813, record));
  TheMachine().documents[PATH].streams = {{L"ScriptoraDesk_MAIN", "....\x07\x10...."s}};
  EXPECT_TRUE(Check(0x0813, record));
  EXPECT_FALSE(Check(0x0813, record, L"other"));
}

TEST_F(CallersBytes, AreNotWhatTextAndWordRowsLookAt) {
  const std::string text = "text";
  for (const int id : {0x0900, 0x0901, 0x0902, 0x0903, 0x0904}) EXPECT_FALSE(Check(id, text)) << id;
  TheMachine().documents[PATH].streams = {{L"WordDocument", PadTo(1'536, "\xEC\xA5\xC1\0"s)}};
  EXPECT_TRUE(Check(0x0814, ""));
  EXPECT_FALSE(Check(0x0801, ""));
}

TEST_F(CallersBytes, NeedNoPath) {
  EXPECT_TRUE(Check(0x0545, "")) << "the name is enough";
  for (const int id : {0x0545, 0x0703, 0x070D, 0x0710, 0x0712, 0x0814, 0x0903}) {
    EXPECT_FALSE(Check(id, "PK\3\4", nullptr)) << id;
  }
}

// Positions among the commands are 16-bit numbers: of 70,000 bytes only 4,462 are looked at, of
// 65,538 none.
TEST_F(CallersBytes, MayBeManyInTheSearchForCommands) {
  const std::string commands = "\xAEMD\xAFx\xAEXY";
  const std::string plain = Fill(70'000, '.');
  EXPECT_TRUE(Check(0x080E, Patch(plain, 0, commands)));
  EXPECT_TRUE(Check(0x080E, Patch(plain, 4'456, commands)));
  EXPECT_FALSE(Check(0x080E, Patch(plain, 4'457, commands)));
  EXPECT_FALSE(Check(0x080E, Patch(plain, 66'000, commands)));
  EXPECT_FALSE(Check(0x080E, Patch(plain.substr(0, 65'538), 0, commands)));
  EXPECT_TRUE(Check(0x080E, Patch(plain.substr(0, 65'537), 65'000, commands)));
}

// Whatever the content, the search for commands ends.
TEST_F(CallersBytes, CannotKeepTheSearchForCommandsGoing) {
  const auto repeated = [](const std::string& unit, std::size_t size) {
    std::string bytes;
    while (bytes.size() < size) bytes += unit;
    return bytes.substr(0, size);
  };
  for (const std::size_t size : {50'000U, 65'537U, 70'000U}) {
    for (const char* unit : {"\xAE", "\xAF", "\xAE\xAF", "\xAEZZ", "\xAETS", "\xAETS.,"}) {
      const bool hasCommas = std::string(unit).ends_with(",");
      EXPECT_EQ(Check(0x080E, repeated(unit, size)), hasCommas) << unit << ", " << size;
    }
    // One command and the closing byte in the last place: the position starts over or leaves.
    const std::string once = Patch(repeated("\xAE", size), size - 4, "\xAEXY\xAF");
    EXPECT_EQ(Check(0x080E, once), size == 50'000U) << size;
  }
}

// A walk that arrives at the last byte of all reads zeros behind it.
TEST_F(CallersBytes, EndWhereAWalkGoesOn) {
  const std::string fillers = Fill(70'000, '\x01');  // records of three bytes
  EXPECT_TRUE(Check(0x0505, fillers));
  EXPECT_TRUE(Check(0x0505, Patch(fillers, 69'996, "\x02.\x01\x7E")));
  EXPECT_FALSE(Check(0x0505, Patch(fillers, 69'996, "\x02.\x04\x7E")));
  EXPECT_TRUE(Check(0x0500, "\0\x20"s + Fill(69'998)));
  EXPECT_FALSE(Check(0x0500, Fill(70'000, ' ')));
}

}  // namespace
}  // namespace typescout::tests
