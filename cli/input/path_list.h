// A file with a list of paths, read piece by piece.
#ifndef TYPESCOUT_CLI_INPUT_PATH_LIST_H
#define TYPESCOUT_CLI_INPUT_PATH_LIST_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace typescout::cli {

// The longest entry of a list, in bytes.
inline constexpr std::size_t LONGEST_ENTRY = 65'536;
// The most empty entries in a row: a list that has more, such as /dev/zero, may have no end.
inline constexpr std::size_t MOST_EMPTY_ENTRIES = 65'536;

// Lines end in LF or CR LF. UTF-16 with a byte-order mark is read too, and a mark of UTF-8 is left
// out. With zero bytes as terminators, the bytes between them are taken as they are.
class PathList {
 public:
  // "-" is standard input. Empty entries are passed over.
  PathList(const std::string& file, bool endsInNul);
  ~PathList();
  PathList(const PathList&) = delete;
  PathList& operator=(const PathList&) = delete;

  enum class Result {
    PATH,
    TOO_LONG,   // an entry beyond LONGEST_ENTRY was passed over; `*path` is its beginning
    HAS_NUL,    // a zero byte in a line: the list is one for zero bytes as terminators
    ALL_EMPTY,  // more than MOST_EMPTY_ENTRIES
    END,        // or an error, or an interrupt
  };
  Result Next(std::string* path);

  // Why it could not be read (on); 0 when it could.
  int error() const { return error_; }

 private:
  enum class Encoding { UNKNOWN, BYTES, UTF16_LITTLE, UTF16_BIG };

  // The next entry without its terminator, `*isCut` when only its beginning.
  bool NextEntry(std::string* entry, bool* isCut);
  bool Fill();
  void Decode(std::string* piece);

  bool isOwned_ = false;
  std::intptr_t handle_ = -1;
  bool endsInNul_;
  bool atEnd_ = false;
  int error_ = 0;
  Encoding encoding_ = Encoding::UNKNOWN;
  std::string undecoded_;
  char16_t highHalf_ = 0;
  std::string buffer_;
  std::size_t at_ = 0;
};

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_INPUT_PATH_LIST_H
