// What only a POSIX system has: names of any bytes.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <utility>

#include "host/posix/regular_file.h"
#include "host/posix/wide_path.h"
#include "tests/support/temp_folder.h"
#include "typescout/typescout.h"

namespace typescout::tests {
namespace {

TEST(PathBytes, TurnsWidePathsIntoBytes) {
  const std::pair<std::wstring, const char*> CASES[] = {
      {L"", ""},
      {L"/a\\b", "/a\\b"},
      {L"\x7F\x80\x7FF\x800\xFFFF", "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF"},
      {L"\xD7FF\xE000", "\xED\x9F\xBF\xEE\x80\x80"},
      {{static_cast<wchar_t>(0x10000), static_cast<wchar_t>(0x10FFFF)},
       "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
      {{static_cast<wchar_t>(0xDC80), static_cast<wchar_t>(0xDCFF)}, "\x80\xFF"},
  };
  for (const auto& [path, bytes] : CASES) {
    EXPECT_STREQ(posix_host::PathBytes(path.c_str()).get(), bytes);
    EXPECT_EQ(posix_host::WidePath(bytes).View(), path) << bytes;
  }
  for (const int c : {0xD800, 0xDBFF, 0xDC00, 0xDC7F, 0xDD00, 0xDFFF, 0x110000, 0x7FFFFFFF, -1}) {
    const std::wstring path = {L'a', static_cast<wchar_t>(c)};
    EXPECT_EQ(posix_host::PathBytes(path.c_str()).get(), nullptr) << std::hex << c;
  }
  EXPECT_EQ(posix_host::PathBytes(nullptr).get(), nullptr);
  const std::wstring longest(259, static_cast<wchar_t>(0x10FFFF));
  ASSERT_NE(posix_host::PathBytes(longest.c_str()).get(), nullptr);
  EXPECT_EQ(std::strlen(posix_host::PathBytes(longest.c_str()).get()), 4 * 259u);
}

TEST(PathBytes, GivesEveryNameBack) {
  // No valid UTF-8: bytes alone, cut, too long, surrogates, beyond the last character.
  for (const char* bytes : {"\x80", "\xC3", "\xC3(", "\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80",
                            "\xF4\x90\x80\x80", "\xF0\x9F\x98", "\xFF\xFE", "a\xE9z"}) {
    EXPECT_STREQ(posix_host::PathBytes(posix_host::WidePath(bytes)).get(), bytes);
  }
}

TEST(Posix, OpensNamesOfAnyBytes) {
  const TempFolder folder;
  for (const char* name : {"\xC3\xA9", "\xE9", "\xF0\x9F\x98\x80", "a\nb", "\xED\xB2\x80", "\\"}) {
    const auto path = posix_host::WidePath(folder.Write(name, "\x89PNG\r\n\x1A\n").string());
    EXPECT_EQ(TypeScoutFile(path), 0x0322) << name;
    posix_host::RegularFile file;
    ASSERT_TRUE(file.Open(path));
    char byte;
    EXPECT_EQ(file.ReadAt(0xFFFF'FFFF'FFFF'FFFF, &byte, 1), 0u);
  }
}

}  // namespace
}  // namespace typescout::tests
