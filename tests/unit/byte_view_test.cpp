// The view that every detector looks through: zeros beyond the end, searches that stop at it.
#include "core/byte_view.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>

namespace typescout::tests {
namespace {

// A view of a heap block of its exact size, so that the address sanitizer sees a read beyond it.
class Block {
 public:
  explicit Block(const std::string& bytes)
      : bytes_(std::make_unique<unsigned char[]>(bytes.size())), size_(bytes.size()) {
    std::copy(bytes.begin(), bytes.end(), bytes_.get());
  }
  // Not inlined: a compiler that sees the literal behind the view warns of the reads that must not
  // be.
  [[gnu::noinline]] ByteView View() const {
    return {bytes_.get(), static_cast<std::int64_t>(size_)};
  }

 private:
  std::unique_ptr<unsigned char[]> bytes_;
  std::size_t size_;
};

TEST(ByteView, ReadsZeroOutside) {
  const Block block("\x81\x82\x83\x84\x85");
  const ByteView view = block.View();
  EXPECT_EQ(view.U8(4), 0x85);
  EXPECT_EQ(view.U8(5), 0);
  EXPECT_EQ(view.U8(-1), 0);
  EXPECT_EQ(view.U8(std::int64_t{1} << 40), 0);
  EXPECT_EQ(view.U16Le(3), 0x8584);
  EXPECT_EQ(view.U16Le(4), 0x0085);
  EXPECT_EQ(view.U16Be(3), 0x8485);
  EXPECT_EQ(view.U16Be(4), 0x8500);
  EXPECT_EQ(view.U32Le(1), 0x85848382u);
  EXPECT_EQ(view.U32Le(2), 0x00858483u);
}

TEST(ByteView, MatchesAsIfZerosFollowed) {
  const Block block("II*");
  const ByteView view = block.View();
  EXPECT_TRUE(view.Matches(0, "II*"));
  EXPECT_TRUE(view.Matches(0, "II*\0"));
  EXPECT_FALSE(view.Matches(0, "II*\1"));
  EXPECT_TRUE(view.Matches(3, "\0\0"));
  EXPECT_TRUE(view.Matches(100, "\0"));
  EXPECT_FALSE(view.Matches(1, "II"));
  EXPECT_FALSE(view.Matches(-1, "II")) << "nor before the first byte";
  EXPECT_TRUE(view.MatchesNoCase(0, "ii*"));
  EXPECT_FALSE(view.MatchesNoCase(0, "ij*"));
  // '[' and '{', '@' and '`' differ by the case bit, and are no letters.
  EXPECT_FALSE(Block("[").View().MatchesNoCase(0, "{"));
  EXPECT_FALSE(Block("@").View().MatchesNoCase(0, "`"));
  EXPECT_TRUE(Block("az").View().MatchesNoCase(0, "AZ"));
}

TEST(ByteView, FindsBytesInside) {
  const Block block("a,b,");
  const ByteView view = block.View();
  EXPECT_EQ(view.Find(','), 1);
  EXPECT_EQ(view.Find(',', 1), 1);
  EXPECT_EQ(view.Find(',', 2), 3);
  EXPECT_EQ(view.Find(',', 4), ByteView::NOT_FOUND);
  EXPECT_EQ(view.Find(',', -1), ByteView::NOT_FOUND);
  EXPECT_EQ(view.First(1).Find(','), ByteView::NOT_FOUND);
  EXPECT_EQ(view.First(9).size(), 4);
  EXPECT_EQ(ByteView(nullptr, -5).size(), 0);
  EXPECT_EQ(ByteView().Find("x"), ByteView::NOT_FOUND);
}

TEST(FindText, AgreesWithThePlainSearch) {
  std::mt19937 random(1);
  for (int round = 0; round < 20'000; ++round) {
    // Few letters, so that false starts abound and the second method takes over.
    std::string bytes(random() % 200, '\0');
    for (char& c : bytes) c = static_cast<char>('a' + random() % 2);
    std::string text(random() % 8, '\0');
    for (char& c : text) c = static_cast<char>('a' + random() % 2);
    if (random() % 4 == 0) bytes += text;
    ASSERT_EQ(FindText(bytes, text), bytes.find(text)) << "'" << text << "' in '" << bytes << "'";
  }
}

}  // namespace
}  // namespace typescout::tests
