// The host suite's wide strings.
#ifndef TYPESCOUT_HOST_STRINGS_H
#define TYPESCOUT_HOST_STRINGS_H

#include <cstddef>
#include <memory>
#include <new>
#include <string_view>

namespace TvnPlatform {

// Looks at a NUL-terminated string, which the caller keeps alive.
template <typename Char>
class TvnStringViewT {
 public:
  explicit TvnStringViewT(const Char* text) : text_(text) {}
  const Char* c_str() const { return text_; }

 private:
  const Char* text_;
};

// Owns a NUL-terminated string. Short ones, such as an extension, need no memory from the heap.
// Memory that runs out leaves an empty string; nothing throws.
template <typename Char>
class TvnStringT {
 public:
  TvnStringT() = default;
  explicit TvnStringT(const Char* text) : TvnStringT(std::basic_string_view<Char>(text)) {}
  explicit TvnStringT(std::basic_string_view<Char> text) {
    if (text.size() >= SHORT) block_.reset(new (std::nothrow) Char[text.size() + 1]);
    if (text.size() >= SHORT && block_ == nullptr) return;
    text.copy(Text(), text.size());
    Text()[text.size()] = Char();
  }

  // Valid while the object lives.
  operator const Char*() const {  // NOLINT: as the suite's
    return block_ == nullptr ? short_ : block_.get();
  }
  std::basic_string_view<Char> View() const { return static_cast<const Char*>(*this); }

  // 0 when the two are equal with ASCII letters compared without regard to case.
  int CompareNoCase(TvnStringViewT<Char> other) const {
    const Char* left = *this;
    const Char* right = other.c_str();
    while (*left != Char() && ToUpper(*left) == ToUpper(*right)) {
      ++left;
      ++right;
    }
    return ToUpper(*left) == ToUpper(*right) ? 0 : 1;
  }

  // ASCII letters, in every locale.
  void MakeUpper() {
    for (Char* at = Text(); *at != Char(); ++at) *at = ToUpper(*at);
  }

 private:
  static constexpr std::size_t SHORT = 16;  // with the terminator
  static constexpr Char ToUpper(Char c) {
    return c >= 'a' && c <= 'z' ? static_cast<Char>(c - ('a' - 'A')) : c;
  }
  Char* Text() { return block_ == nullptr ? short_ : block_.get(); }

  std::unique_ptr<Char[]> block_;
  Char short_[SHORT] = {};
};

}  // namespace TvnPlatform

namespace TvnUtl {

// Copies `source` with its terminator into `destination`, which has room for `capacity` (at least
// 1) characters, and returns `destination`. A source that does not fit leaves it EMPTY, never cut:
// a path that is too long must not name another file.
wchar_t* StringCopy(wchar_t* destination, std::size_t capacity, const wchar_t* source);

}  // namespace TvnUtl

#endif  // TYPESCOUT_HOST_STRINGS_H
