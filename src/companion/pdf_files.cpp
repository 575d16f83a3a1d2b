#include "companion/pdf_files.h"

#include <filesystem>

#include "companion/error.h"
#include "companion/pdf_preparation.h"
#include "companion/whole_file.h"

namespace companion {

using vornaset::Handle;
using vornaset::MyPDFDoc;
using vornaset::String;

class KeptMessages::Keeper final : public vornaset::AlertPresenter {
  public:
    void beep() override {}
    vornaset::AlertAnswer run(const vornaset::Alert& alert) override {
        if (!text_.empty()) text_ += "; ";
        text_ += alert.message.utf8();
        return vornaset::AlertAnswer::defaultButton;
    }
    std::string take() { return std::exchange(text_, std::string()); }

  private:
    std::string text_;
};

KeptMessages::KeptMessages() : keeper_(std::make_shared<Keeper>()), former_(vornaset::setAlertPresenter(keeper_)) {}

KeptMessages::~KeptMessages() {
    vornaset::setAlertPresenter(former_);
}

std::string KeptMessages::take() {
    return keeper_->take();
}

Handle<MyPDFDoc> readPdf(const std::string& path, KeptMessages& messages) {
    std::error_code failure;
    const auto status = std::filesystem::status(path, failure);
    if (!std::filesystem::exists(status)) throw Error("there is no file \"" + path + "\".");
    if (!std::filesystem::is_regular_file(status)) throw Error("\"" + path + "\" isn't a file; name a PDF file.");
    if (String::fromDamagedUTF8(path).utf8() != path)
        throw Error("the name \"" + path + "\" isn't UTF-8, so the file can't be read; rename it.");
    Handle<MyPDFDoc> document = MyPDFDoc::pdfDocWithPath(String(path.c_str()));
    const std::string said = messages.take();
    if (!said.empty()) throw Error("\"" + path + "\" can't be read whole: " + said + ".");
    if (!document->catalog())
        throw Error("\"" + path +
                    "\" can't be read as PDF: it is damaged, needs a password or is another kind of file.");
    if (document->pages().isEmpty()) throw Error("\"" + path + "\" has no pages.");
    prepareForCommands(document);
    return document;
}

void writePdf(const Handle<MyPDFDoc>& document, const std::string& path, KeptMessages& messages) {
    WholeFile file("the output", path);
    const vornaset::Data bytes = document->pdfData();
    const std::string said = messages.take();
    if (!said.empty()) throw Error("\"" + path + "\" can't be written: " + said + ".");
    file.finish(bytes.view());
}

}  // namespace companion
