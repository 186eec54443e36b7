// A PDF file as qpdf reads it.
#ifndef TYPESCOUT_MODULES_PDF_IMPORT_GUARDED_INPUT_H
#define TYPESCOUT_MODULES_PDF_IMPORT_GUARDED_INPUT_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <qpdf/InputSource.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFTokenizer.hh>
#include <string>

#include "modules/bounded_file.h"

namespace pdf_import {

// Lets qpdf read within the limits of BoundedFile, and read no object that would exceed
// them: qpdf unpacks the streams that hold objects and cross-references in one go, whatever
// comes out, and follows references as deep as they lead. So each object is looked at just before
// qpdf reads it; a stream must be packed once at most, and what comes out is counted first. All
// functions throw modules::LimitReached.
class GuardedInput final : public InputSource {
 public:
  // What may come out of all streams together. Of the smallest objects, this makes qpdf take 64
  // megabytes and some 100 ms.
  static constexpr std::int64_t UNPACKED_LIMIT = 512 << 10;
  // How far qpdf may go down the stack, counted from where the input was made.
  static constexpr std::ptrdiff_t STACK_LIMIT = 192 << 10;

  // `file` and `pdf`, the document that reads this, outlive the input.
  GuardedInput(const posix_host::RegularFile& file, QPDF& pdf) : file_(file), pdf_(pdf) {}

  qpdf_offset_t findAndSkipNextEOL() override;
  std::string const& getName() const override { return name_; }
  qpdf_offset_t tell() override { return position_; }
  void seek(qpdf_offset_t offset, int origin) override;
  void rewind() override { position_ = 0; }
  std::size_t read(char* to, std::size_t count) override;
  void unreadCh(char /*c*/) override { --position_; }

 private:
  class Object;
  // Where the packed data of a stream begins, and whose it is.
  using Packed = std::map<std::int64_t, QPDFObjGen>;

  void SkipSpace(std::int64_t* at);
  bool MayBeStream(std::int64_t at);
  void CheckObjectAt(std::int64_t offset);
  // Counts what comes out of a stream: before qpdf decrypts it, and when it does.
  void Measure(std::int64_t dataAt);
  void MeasureEncrypted(const Packed::node_type& stream);
  void CountUnpacked(std::int64_t bytes);

  modules::BoundedFile file_;
  QPDF& pdf_;
  const std::string name_;
  const char* const stackAt_ = static_cast<const char*>(__builtin_frame_address(0));
  std::int64_t position_ = 0;
  std::int64_t unpacked_ = 0;
  Packed packed_;
};

}  // namespace pdf_import

#endif  // TYPESCOUT_MODULES_PDF_IMPORT_GUARDED_INPUT_H
