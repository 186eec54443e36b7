// The patterns of --exclude, the same on every system.
#ifndef TYPESCOUT_CLI_INPUT_GLOB_H
#define TYPESCOUT_CLI_INPUT_GLOB_H

#include <string>
#include <string_view>

namespace typescout::cli {

// `*` stands for any characters, separators too, `?` for one, [a-z] and [!a-z] for one of a class.
// Where `\` separates components, it and `/` are the same; elsewhere it takes the next character's
// meaning. Letters differ by case where the system's file names do.
class Glob {
 public:
  explicit Glob(std::string_view pattern);

  // Whether it matches an entry of a walk: by its name, or by the whole path when the pattern has a
  // separator other than the last character; "./" in front of either is ignored. A pattern
  // that ends in a separator matches folders only.
  bool Matches(std::string_view path, std::string_view name, bool isFolder) const;

 private:
  std::wstring pattern_;
  bool isForFolders_ = false;
  bool isForPaths_ = false;
};

}  // namespace typescout::cli

#endif  // TYPESCOUT_CLI_INPUT_GLOB_H
