#include "host/path.h"

#include <string>

namespace SystemIO::Path {
namespace {

using TvnPlatform::TvnStringT;

#ifdef _WIN32
constexpr wchar_t SEPARATOR = L'\\';
#else
constexpr wchar_t SEPARATOR = L'/';
#endif

bool IsSeparator(wchar_t c) { return c == L'/' || c == L'\\'; }

std::wstring_view LastComponent(std::wstring_view path) {
  std::size_t start = path.size();
  while (start > 0 && !IsSeparator(path[start - 1])) --start;
  return path.substr(start);
}

std::wstring_view Extension(std::wstring_view path) {
  const std::wstring_view name = LastComponent(path);
  const std::size_t dot = name.rfind(L'.');
  return dot == std::wstring_view::npos ? std::wstring_view() : name.substr(dot);
}

}  // namespace

bool HasExtension(const wchar_t* path, const wchar_t* extension) {
  const std::wstring_view name = LastComponent(path);
  const std::wstring_view wanted = extension;
  if (name.size() < wanted.size()) return false;
  const TvnStringT<wchar_t> end(name.substr(name.size() - wanted.size()));
  return end.CompareNoCase(TvnPlatform::TvnStringViewT<wchar_t>(extension)) == 0;
}

TvnStringT<wchar_t> GetExtension(const wchar_t* path) {
  return TvnStringT<wchar_t>(Extension(path));
}

TvnStringT<wchar_t> Combine(const wchar_t* directory, const wchar_t* file) {
  const std::wstring_view folder = directory;
  if (folder.empty()) return {};
  try {
    std::wstring joined(folder);
    if (!IsSeparator(joined.back())) joined += SEPARATOR;
    joined += file;
    return TvnStringT<wchar_t>(std::wstring_view(joined));
  } catch (const std::bad_alloc&) {
    return {};
  }
}

}  // namespace SystemIO::Path
