#include "cli/input/glob.h"

#include <optional>

#include "cli/platform/folders.h"
#include "cli/utf8.h"

namespace typescout::cli {
namespace {

// With '/' for every separator, in one case where case does not matter.
std::wstring Normalise(std::string_view text) {
  while (text.size() > 1 && text[0] == '.' && platform::IsSeparator(text[1])) {
    text.remove_prefix(2);
    while (!text.empty() && platform::IsSeparator(text[0])) text.remove_prefix(1);
  }
  std::wstring wide = ToWide(text);
  for (wchar_t& c : wide) {
    if (c == L'\\' && platform::IsSeparator('\\')) c = L'/';
  }
  platform::FoldCase(&wide);
  return wide;
}

// Whether `c` is in the class that `*pattern` begins with, which is taken off; nothing when it is
// no class, so that '[' stands for itself.
std::optional<bool> MatchesClass(std::wstring_view* pattern, wchar_t c) {
  std::wstring_view rest = pattern->substr(1);
  const bool isInverted = !rest.empty() && (rest[0] == L'!' || rest[0] == L'^');
  if (isInverted) rest.remove_prefix(1);
  bool isIn = false;
  for (bool isFirst = true; !rest.empty() && (isFirst || rest[0] != L']'); isFirst = false) {
    const bool isRange = rest.size() > 2 && rest[1] == L'-' && rest[2] != L']';
    isIn = isIn || (isRange ? rest[0] <= c && c <= rest[2] : rest[0] == c);
    rest.remove_prefix(isRange ? 3 : 1);
  }
  if (rest.empty()) return std::nullopt;
  *pattern = rest.substr(1);
  return isIn != isInverted;
}

// Whether the first character of `*pattern` (not '*') stands for `c`; both are taken off.
bool MatchesOne(std::wstring_view* pattern, wchar_t c) {
  if (pattern->front() == L'[') {
    if (const std::optional<bool> isIn = MatchesClass(pattern, c)) return *isIn;
  }
  const bool isAny = pattern->front() == L'?';
  const bool isEscape =
      pattern->front() == L'\\' && pattern->size() > 1 && !platform::IsSeparator('\\');
  if (isEscape) pattern->remove_prefix(1);
  const bool matches = isAny || pattern->front() == c;
  pattern->remove_prefix(1);
  return matches;
}

// Goes back to the last '*' only, so the time is bounded by the product of the lengths.
bool MatchesWhole(std::wstring_view pattern, std::wstring_view text) {
  std::optional<std::wstring_view> afterStar;
  std::wstring_view textAtStar;
  while (!text.empty() || !pattern.empty()) {
    if (!pattern.empty() && pattern.front() == L'*') {
      pattern.remove_prefix(1);
      afterStar = pattern;
      textAtStar = text;
      continue;
    }
    if (!pattern.empty() && !text.empty() && MatchesOne(&pattern, text.front())) {
      text.remove_prefix(1);
      continue;
    }
    if (!afterStar || textAtStar.empty()) return false;
    textAtStar.remove_prefix(1);
    text = textAtStar;
    pattern = *afterStar;
  }
  return true;
}

}  // namespace

Glob::Glob(std::string_view pattern) : pattern_(Normalise(pattern)) {
  if (pattern_.size() > 1 && pattern_.ends_with(L'/')) {
    pattern_.pop_back();
    isForFolders_ = true;
  }
  isForPaths_ = pattern_.find(L'/') != std::wstring::npos;
}

bool Glob::Matches(std::string_view path, std::string_view name, bool isFolder) const {
  if (isForFolders_ && !isFolder) return false;
  return MatchesWhole(pattern_, Normalise(isForPaths_ ? path : name));
}

}  // namespace typescout::cli
