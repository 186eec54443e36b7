// A short name for what the library cannot open by the caller's: content in memory, and paths of
// more characters than it takes.
#ifndef TYPESCOUT_PYTHON_TEMPORARY_NAME_H
#define TYPESCOUT_PYTHON_TEMPORARY_NAME_H

#include <string>
#include <string_view>

namespace typescout::python {

// One file or link in a folder of its own, readable by this user only; both are removed with the
// object. The name ends in the extension of the name given, since some rows look at it.
class TemporaryName {
 public:
  // Either may fail; then `error()` is the errno and `path()` is empty.
  static TemporaryName ForContent(std::string_view content, std::string_view name);
  static TemporaryName ForLongPath(const std::string& path);

  TemporaryName(TemporaryName&& other) noexcept;
  TemporaryName& operator=(TemporaryName&&) = delete;
  ~TemporaryName();

  // In ASCII.
  const std::string& path() const { return path_; }
  int error() const { return error_; }

 private:
  TemporaryName() = default;

  // Makes the folder and puts the path of the file to be into `path_`. False on an error.
  bool MakeFolder(std::string_view name);
  void Fail();

  std::string folder_;
  std::string path_;
  int error_ = 0;
};

}  // namespace typescout::python

#endif  // TYPESCOUT_PYTHON_TEMPORARY_NAME_H
