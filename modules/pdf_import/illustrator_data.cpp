#include "modules/pdf_import/illustrator_data.h"

#include <algorithm>
#include <memory>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <string>
#include <vector>

#include "modules/pdf_import/guarded_input.h"

namespace pdf_import {
namespace {

// How many pages are looked at. Illustrator itself opens a document by its first page.
constexpr int PAGE_LIMIT = 4;
// Pages and the nodes above them.
constexpr int NODE_LIMIT = 4 * PAGE_LIMIT;

// Whether a page or the catalogue holds what Illustrator needs to open the document as its own:
// /PieceInfo << /Illustrator << /Private << /AIMetaData ... /AIPrivateData1 ... >> >> >>. The data
// itself is not looked at.
bool HasIllustratorData(QPDFObjectHandle holder) {
  for (const char* key : {"/PieceInfo", "/Illustrator", "/Private"}) {
    holder = holder.getKey(key);
    if (!holder.isDictionary()) return false;
  }
  for (const auto& [name, value] : holder.getDictAsMap()) {
    if (name == "/AIMetaData" || name.rfind("/AIPrivateData", 0) == 0) return true;
  }
  return false;
}

// The same of any of the first pages. None when the pages cannot be read.
std::optional<bool> AnyPageHasIllustratorData(const QPDFObjectHandle& root) {
  std::vector<QPDFObjectHandle> open = {root};
  int nodes = 0;
  for (int pages = 0; !open.empty() && pages < PAGE_LIMIT && nodes < NODE_LIMIT; ++nodes) {
    QPDFObjectHandle node = open.back();
    open.pop_back();
    if (!node.isDictionary()) return std::nullopt;
    QPDFObjectHandle kids = node.getKey("/Kids");
    if (kids.isArray()) {
      for (int i = std::min(kids.getArrayNItems(), PAGE_LIMIT); i-- > 0;) {
        open.push_back(kids.getArrayItem(i));
      }
    } else {
      if (HasIllustratorData(node)) return true;
      ++pages;
    }
  }
  return false;
}

}  // namespace

std::string QpdfVersion() { return QPDF::QPDFVersion(); }

std::optional<bool> HasIllustratorData(const posix_host::RegularFile& file) {
  QPDF pdf;
  pdf.setSuppressWarnings(true);
  pdf.setAttemptRecovery(false);
  pdf.processInputSource(std::make_shared<GuardedInput>(file, pdf));
  const std::size_t warnings = pdf.numWarnings();
  QPDFObjectHandle catalog = pdf.getRoot();
  const std::optional<bool> answer =
      HasIllustratorData(catalog) ? true : AnyPageHasIllustratorData(catalog.getKey("/Pages"));
  // A damaged object looks like a missing one, but there is a warning.
  return answer == false && pdf.numWarnings() != warnings ? std::nullopt : answer;
}

}  // namespace pdf_import
