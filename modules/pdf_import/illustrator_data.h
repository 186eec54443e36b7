// Illustrator's data in a PDF file. ISO 32000-1, 14.5 (page-piece dictionaries).
#ifndef TYPESCOUT_MODULES_PDF_IMPORT_ILLUSTRATOR_DATA_H
#define TYPESCOUT_MODULES_PDF_IMPORT_ILLUSTRATOR_DATA_H

#include <optional>
#include <string>

#include "host/posix/regular_file.h"

namespace pdf_import {

// Whether the document in `file`, which is open, carries what Illustrator needs to open it as its
// own. None when that is not known. Throws what qpdf throws and modules::LimitReached: then it is
// not known either.
std::optional<bool> HasIllustratorData(const posix_host::RegularFile& file);

std::string QpdfVersion();

}  // namespace pdf_import

#endif  // TYPESCOUT_MODULES_PDF_IMPORT_ILLUSTRATOR_DATA_H
