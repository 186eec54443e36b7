// The view of the bytes: zeros beyond the end, searches that stop at it.
#include "core/byte_view.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace typescout::tests {
namespace {

// In a heap block of their exact size, so that the address sanitizer sees a read beyond it.
std::vector<unsigned char> Block(std::string_view bytes) { return {bytes.begin(), bytes.end()}; }

// Not inlined: a compiler that sees the literal behind the view warns of the reads that must not
// be.
[[gnu::noinline]] ByteView View(const std::vector<unsigned char>& block) {
  return {block.data(), static_cast<ByteView::Position>(block.size())};
}

TEST(ByteView, ReadsZeroOutside) {
  const auto block = Block("\x81\x82\x83\x84\x85");
  const ByteView view = View(block);
  EXPECT_EQ(view.U8(4), 0x85);
  EXPECT_EQ(view.U8(5), 0);
  EXPECT_EQ(view.U8(-1), 0);
  EXPECT_EQ(view.U8(std::int64_t{1} << 40), 0);
  EXPECT_EQ(view.U16Le(4), 0x0085);
  EXPECT_EQ(view.U16Be(4), 0x8500);
  EXPECT_EQ(view.U32Le(2), 0x00858483u);
}

TEST(ByteView, MatchesAsIfZerosFollowed) {
  const auto block = Block("II*");
  const ByteView view = View(block);
  EXPECT_TRUE(view.Matches(0, "II*\0"));
  EXPECT_FALSE(view.Matches(0, "II*\1"));
  EXPECT_TRUE(view.Matches(3, "\0\0"));
  EXPECT_TRUE(view.Matches(100, "\0"));
  EXPECT_FALSE(view.Matches(-1, "II")) << "nor before the first byte";
}

TEST(ByteView, MatchesLettersInEitherCase) {
  const auto block = Block("az[@");
  const ByteView view = View(block);
  EXPECT_TRUE(view.MatchesNoCase(0, "AZ[@\0"));
  EXPECT_FALSE(view.MatchesNoCase(0, "ay"));
  // They differ by the case bit, and are no letters.
  EXPECT_FALSE(view.MatchesNoCase(2, "{"));
  EXPECT_FALSE(view.MatchesNoCase(3, "`"));
}

TEST(ByteView, FindsBytesInside) {
  const auto block = Block("a,b,x,");
  const ByteView view = View(block).First(4);
  EXPECT_EQ(view.Find(',', 1), 1);
  EXPECT_EQ(view.Find(',', 2), 3);
  for (const int from : {4, 5, -1}) EXPECT_EQ(view.Find(',', from), ByteView::NOT_FOUND) << from;
  EXPECT_EQ(view.First(1).Find(','), ByteView::NOT_FOUND);
  EXPECT_EQ(view.First(9).size(), 4);
  EXPECT_EQ(ByteView(nullptr, -5).size(), 0);
  EXPECT_EQ(ByteView().Find("x"), ByteView::NOT_FOUND);
}

TEST(ByteView, FindsTextAsThePlainSearchDoes) {
  std::mt19937 random(1);
  for (int round = 0; round < 20'000; ++round) {
    // Few letters, so that false starts abound; longer than the blocks that are searched as a
    // whole.
    std::string bytes(random() % 300, '\0');
    for (char& c : bytes) c = static_cast<char>('a' + random() % 2);
    std::string text(random() % 12, '\0');
    for (char& c : text) c = static_cast<char>('a' + random() % 2);
    if (random() % 4 == 0) bytes += text;
    const auto block = Block(bytes);
    const std::size_t hit = bytes.find(text);
    ASSERT_EQ(View(block).Find(text),
              hit == std::string::npos ? ByteView::NOT_FOUND : static_cast<std::int64_t>(hit))
        << "'" << text << "' in '" << bytes << "'";
  }
}

// Whatever the bytes are. See the bound at FindSequence.
TEST(ByteView, TestsEachByteABoundedNumberOfTimes) {
  constexpr ByteView::Position LENGTH = 17;
  for (const std::string unit : {"a", "aaaaaaaaaaaaaaaab", "ab", "aab", "aaaaaaaab"}) {
    std::string bytes;
    while (bytes.size() < 50'000) bytes += unit;
    const auto block = Block(bytes);
    std::int64_t tests = 0;
    View(block).FindSequence('a', LENGTH, [&tests](std::int64_t i, std::uint8_t byte) {
      ++tests;
      return i < LENGTH - 1 ? byte == 'a' : byte == '!';
    });
    EXPECT_LE(tests, 2 * LENGTH * static_cast<std::int64_t>(bytes.size())) << unit;
  }
}

}  // namespace
}  // namespace typescout::tests
