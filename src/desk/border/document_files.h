#pragma once
// What the border asks of whoever opens and saves documents. The desk's session implements it.

#include <string>

#include "desk/model/document.h"

namespace desk {

/// None of these throws. A document that is opened or made stands behind the border afterwards, in front.
class DocumentFiles {
  public:
    /// Null when the file can't be opened.
    virtual Document* open(const std::string& path) = 0;
    /// A new document of one empty page; null when it can't be made.
    virtual Document* create() = 0;
    /// Writes the document to a file, which appears whole or not at all. The document keeps its own path.
    virtual bool write(const Document& document, const std::string& path) = 0;
    /// The document goes, unless somebody else than a plug-in opened it: then it only leaves the border.
    virtual void close(Document& document) = 0;

  protected:
    ~DocumentFiles() = default;
};

}  // namespace desk
