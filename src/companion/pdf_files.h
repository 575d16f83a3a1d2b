#pragma once

#include <string>
#include <vector>

#include "pdf/pdf_doc.h"
#include "support/alert.h"

namespace companion {

/// Keeps what the toolkit would show to the user, so that it becomes a sentence of the run. In force while it lives.
class KeptMessages {
  public:
    KeptMessages();
    ~KeptMessages();
    KeptMessages(const KeptMessages&) = delete;
    KeptMessages& operator=(const KeptMessages&) = delete;

    /// Those since the last call, joined; empty for none.
    std::string take();

  private:
    class Keeper;
    std::shared_ptr<Keeper> keeper_;
    std::shared_ptr<vornaset::AlertPresenter> former_;
};

/// A file as a document that is prepared for the commands. Throws Error when there is no such file, when it can't be
/// read as PDF, or when reading broke off.
vornaset::Handle<vornaset::MyPDFDoc> readPdf(const std::string& path, KeptMessages& messages);

/// The document's bytes under the path, as a whole or not at all. Throws Error.
void writePdf(const vornaset::Handle<vornaset::MyPDFDoc>& document, const std::string& path, KeptMessages& messages);

}  // namespace companion
