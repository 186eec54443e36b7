// An input's last bytes as a row of choices; the bytes before them are its content.
#ifndef TYPESCOUT_FUZZ_CHOICES_H
#define TYPESCOUT_FUZZ_CHOICES_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

namespace fuzz {

// How many bytes choose. Zeros are the plain choices: what is made of a sample adds this many.
inline constexpr std::size_t CHOICE_COUNT = 56;

class Choices {
 public:
  // Looks at the `size` bytes at `data`, which the caller keeps alive.
  Choices(const std::uint8_t* data, std::size_t size)
      : data_(data), size_(size), at_(size - std::min(size, CHOICE_COUNT)) {}

  std::string Content() const {
    return {reinterpret_cast<const char*>(data_), size_ - std::min(size_, CHOICE_COUNT)};
  }
  // The next choice; 0 when all are used up.
  std::uint8_t Next() { return at_ < size_ ? data_[at_++] : std::uint8_t{0}; }
  // The next `count` choices, to be used up on their own.
  Choices Part(std::size_t count) {
    const std::size_t begin = at_;
    at_ = std::min(begin + count, size_);
    return Choices(data_, at_, begin);
  }
  // The next choice as one of `values`.
  template <typename Value, std::size_t N>
  const Value& Among(const Value (&values)[N]) {
    return values[Next() % N];
  }

 private:
  Choices(const std::uint8_t* data, std::size_t size, std::size_t at)
      : data_(data), size_(size), at_(at) {}

  const std::uint8_t* data_;
  std::size_t size_;
  std::size_t at_;
};

}  // namespace fuzz

#endif  // TYPESCOUT_FUZZ_CHOICES_H
