// Reading a file into a graph of objects.

#include <string_view>

#include "pdf/pdf_doc.h"
#include "pdf/pdf_keys.h"
#include "support/paths.h"
#include "support/text_decoding.h"

namespace vornaset {

void MyPDFDoc::initWithPath(const String& path, uint8_t) {
    if (absent_) return;
    path_ = path;
    root_ = MyPDFDictionary::make();
    pdfObjs_ = ObjectList<MyPDFObj>::make();
    if (!pathIsFile(path)) setupNew(dataWithString(u"%PDF-1.3\n%‚„œ”\n"));
    root_->setObject(info_, pdf_key::kInfo);
    root_->setObject(catalog_, pdf_key::kCatalog);
}

}  // namespace vornaset
