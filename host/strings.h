// The host suite's wide strings.
#ifndef TYPESCOUT_HOST_STRINGS_H
#define TYPESCOUT_HOST_STRINGS_H

#include <cstddef>
#include <cstdint>
#include <new>
#include <string_view>
#include <utility>

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

// Owns a NUL-terminated string. Memory that runs out leaves an empty string; nothing throws.
template <typename Char>
class TvnStringT {
 public:
  TvnStringT() = default;
  explicit TvnStringT(const Char* text) : TvnStringT(std::basic_string_view<Char>(text)) {}
  explicit TvnStringT(std::basic_string_view<Char> text)
      : text_(new (std::nothrow) Char[text.size() + 1]) {
    if (text_ == nullptr) return;
    text.copy(text_, text.size());
    text_[text.size()] = Char();
  }
  TvnStringT(TvnStringT&& other) noexcept : text_(std::exchange(other.text_, nullptr)) {}
  TvnStringT& operator=(TvnStringT&& other) noexcept {
    std::swap(text_, other.text_);
    return *this;
  }
  ~TvnStringT() { delete[] text_; }

  // Valid while the object lives.
  operator const Char*() const {
    return text_ == nullptr ? EMPTY : text_;
  }  // NOLINT: as the suite's
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
    if (text_ == nullptr) return;
    for (Char* at = text_; *at != Char(); ++at) *at = ToUpper(*at);
  }

 private:
  static constexpr Char EMPTY[1] = {};
  static constexpr Char ToUpper(Char c) {
    return c >= 'a' && c <= 'z' ? static_cast<Char>(c - ('a' - 'A')) : c;
  }

  Char* text_ = nullptr;
};

}  // namespace TvnPlatform

namespace TvnUtl {

// Copies `source` with its terminator into `destination`, which has room for `capacity` (at least
// 1) characters, and returns `destination`. A source that does not fit leaves it EMPTY, never cut:
// a path that is too long must not name another file.
wchar_t* StringCopy(wchar_t* destination, std::size_t capacity, const wchar_t* source);

}  // namespace TvnUtl

#endif  // TYPESCOUT_HOST_STRINGS_H
