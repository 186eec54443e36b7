// A bounds-checked view of bytes. Bytes before the start and beyond the end read as 0.
//
// A signature is compared as if zeros followed the last byte. A rule that needs its bytes wholly
// inside the view tests the length itself. Searches stop at the end.
#ifndef TYPESCOUT_CORE_BYTE_VIEW_H
#define TYPESCOUT_CORE_BYTE_VIEW_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace typescout {

// ASCII only, in every locale; other bytes are returned unchanged.
constexpr std::uint8_t ToUpperAscii(std::uint8_t byte) {
  return byte >= 'a' && byte <= 'z' ? static_cast<std::uint8_t>(byte - ('a' - 'A')) : byte;
}
constexpr bool IsAsciiDigit(std::uint8_t byte) { return byte >= '0' && byte <= '9'; }
constexpr bool IsAsciiUpper(std::uint8_t byte) { return byte >= 'A' && byte <= 'Z'; }
constexpr bool IsAsciiLetter(std::uint8_t byte) { return IsAsciiUpper(ToUpperAscii(byte)); }

class ByteView {
 public:
  using Position = std::int64_t;
  static constexpr Position NOT_FOUND = -1;

  constexpr ByteView() = default;
  // `size` bytes at `bytes`, which the caller keeps alive; a negative size gives an empty view.
  constexpr ByteView(const unsigned char* bytes, Position size)
      : bytes_(bytes), size_(std::max<Position>(size, 0)) {}
  // The same of text.
  explicit ByteView(std::string_view text)
      : ByteView(reinterpret_cast<const unsigned char*>(text.data()),
                 static_cast<Position>(text.size())) {}

  constexpr Position size() const { return size_; }

  constexpr std::uint8_t U8(Position at) const {
    return at >= 0 && at < size_ ? bytes_[at] : std::uint8_t{0};
  }
  constexpr std::uint16_t U16Le(Position at) const {
    return static_cast<std::uint16_t>(U8(at) | U8(at + 1) << 8);
  }
  constexpr std::uint16_t U16Be(Position at) const {
    return static_cast<std::uint16_t>(U8(at) << 8 | U8(at + 1));
  }
  constexpr std::uint32_t U32Le(Position at) const {
    return U16Le(at) | static_cast<std::uint32_t>(U16Le(at + 2)) << 16;
  }

  // Whether the literal (without its terminating zero) stands at `at`.
  template <std::size_t N>
  bool Matches(Position at, const char (&literal)[N]) const {
    static_assert(N > 1, "an empty literal matches everywhere");
    constexpr auto LENGTH = static_cast<Position>(N - 1);
    if (at >= 0 && at <= size_ - LENGTH) return std::memcmp(bytes_ + at, literal, N - 1) == 0;
    for (Position i = 0; i < LENGTH; ++i) {
      if (U8(at + i) != static_cast<std::uint8_t>(literal[i])) return false;
    }
    return true;
  }

  // The same with ASCII letters compared without regard to case.
  template <std::size_t N>
  bool MatchesNoCase(Position at, const char (&literal)[N]) const {
    static_assert(N > 1, "an empty literal matches everywhere");
    for (std::size_t i = 0; i < N - 1; ++i) {
      if (ToUpperAscii(U8(at + static_cast<Position>(i))) !=
          ToUpperAscii(static_cast<std::uint8_t>(literal[i]))) {
        return false;
      }
    }
    return true;
  }

  // The position of the first `byte` at or after `from`, or NOT_FOUND.
  Position Find(std::uint8_t byte, Position from = 0) const {
    if (from < 0 || from >= size_) return NOT_FOUND;
    const void* hit = std::memchr(bytes_ + from, byte, static_cast<std::size_t>(size_ - from));
    return hit == nullptr ? NOT_FOUND : static_cast<const unsigned char*>(hit) - bytes_;
  }

  // The first position where `length` (at least 1) bytes inside the view are `first` and then bytes
  // for which `test(i, byte)` holds, i being 1, 2 and so on; NOT_FOUND when there is none.
  //
  // The bound: each byte is tested at most 2 * `length` times and passed to memchr twice. When a
  // false start has another start near, the next 64 positions are tested together, without a branch
  // on a byte's value, so that the compiler can test many at once.
  template <typename Test>
  Position FindSequence(std::uint8_t first, Position length, Test test) const {
    const Position starts = size_ - length + 1;
    for (Position at = Find(first); at != NOT_FOUND && at < starts;) {
      if (MatchesSequence(at, length, test)) return at;
      const Position behind = at + 1;
      at = Find(first, behind);
      const bool isFar = at == NOT_FOUND || at - behind >= BLOCK;
      if (isFar || starts - behind < BLOCK) continue;
      const Position hit = FindInBlock(behind, first, length, test);
      if (hit < BLOCK) return behind + hit;
      at = Find(first, behind + BLOCK);
    }
    return NOT_FOUND;
  }

  // The position of the first occurrence of `text` that lies wholly inside the view, or NOT_FOUND.
  // An empty text stands at 0.
  Position Find(std::string_view text) const;

  // The first `count` bytes, or all when there are fewer.
  constexpr ByteView First(Position count) const { return {bytes_, std::min(count, size_)}; }

  // The bytes from `at` on, or none when there are fewer; `at` is not negative.
  constexpr ByteView From(Position at) const {
    const Position skipped = std::min(at, size_);
    return {bytes_ + skipped, size_ - skipped};
  }

  // The same bytes as text.
  std::string_view Text() const {
    return size_ == 0 ? std::string_view()
                      : std::string_view(reinterpret_cast<const char*>(bytes_),
                                         static_cast<std::size_t>(size_));
  }

 private:
  static constexpr Position BLOCK = 64;

  template <typename Test>
  bool MatchesSequence(Position at, Position length, Test test) const {
    for (Position i = 1; i < length; ++i) {
      if (!test(i, bytes_[at + i])) return false;
    }
    return true;
  }

  // FindSequence for the BLOCK positions from `at` on: the distance from `at`, or BLOCK. Most
  // blocks are done after one group of tests.
  template <typename Test>
  Position FindInBlock(Position at, std::uint8_t first, Position length, Test test) const {
    constexpr Position GROUP = 4;
    std::array<std::uint8_t, std::size_t{BLOCK}> possible;
    const unsigned char* const starts = bytes_ + at;
    for (std::size_t i = 0; i < BLOCK; ++i) possible[i] = starts[i] == first;
    for (Position tested = 1; tested < length;) {
      for (const Position end = std::min(tested + GROUP, length); tested < end; ++tested) {
        const unsigned char* const bytes = starts + tested;
        for (std::size_t i = 0; i < BLOCK; ++i) {
          possible[i] &= static_cast<std::uint8_t>(test(tested, bytes[i]));
        }
      }
      std::uint8_t any = 0;
      for (const std::uint8_t one : possible) any |= one;
      if (any == 0) return BLOCK;
    }
    return ByteView(possible.data(), BLOCK).Find(1);
  }

  const unsigned char* bytes_ = nullptr;
  Position size_ = 0;
};

}  // namespace typescout

#endif  // TYPESCOUT_CORE_BYTE_VIEW_H
