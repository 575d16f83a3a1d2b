#include "pdf/barcode_page.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string_view>

#include "pdf/file_replacement.h"
#include "pdf/renderer_programs.h"
#include "support/paths.h"
#include "support/processes.h"

namespace vornaset {

namespace {

const String kCourier(u"Courier");
const String kFont(u"Font");

/// A folder that nobody else knows, with all in it, for the time of a scope.
class PrivateFolder {
  public:
    explicit PrivateFolder(const String& parent)
        : path_(stringByAppendingPathComponents(parent, u"vornaset-XXXXXX", nullptr).utf8()) {
        if (::mkdtemp(path_.data()) == nullptr) path_.clear();
    }
    ~PrivateFolder() {
        std::error_code ignored;
        if (exists()) std::filesystem::remove_all(path_, ignored);
    }
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;

    bool exists() const { return !path_.empty(); }
    const std::string& path() const { return path_; }
    std::string file(const char* name) const { return path_ + "/" + name; }

  private:
    std::string path_;
};

bool isOnSearchPath(std::string_view program) {
    const char* variable = std::getenv("PATH");
    std::string_view folders = variable ? variable : "";
    while (!folders.empty()) {
        const std::string_view folder = folders.substr(0, folders.find(':'));
        folders.remove_prefix(std::min(folders.size(), folder.size() + 1));
        const std::string path = std::string(folder) + "/" + std::string(program);
        if (!folder.empty() && ::access(path.c_str(), X_OK) == 0) return true;
    }
    return false;
}

/// What the program says about the job goes nowhere; the file counts only when the whole job went well. The safe mode
/// lets a job read all of the temporary folder, so that is one with nothing else in it.
constexpr const char* kConversion =
    "TMPDIR=\"$3\" gs -q -dSAFER -dBATCH -dNOPAUSE -sDEVICE=pdfwrite -sOutputFile=\"$2\" -f \"$1\" </dev/null "
    ">/dev/null 2>&1 "
    "&& cat \"$2\"";

}  // namespace

Handle<MyPDFDoc> pdfDocWithEANCode(const String& script, const String& encoding, const String& code,
                                   const PageSize& size) {
    if (script.isNull()) return nullptr;
    const Value words[] = {String(u"-e"), encoding, String(u"-b"), code, String(u"-D")};
    Array arguments = Array::makeMutable();
    for (const Value& word : words) arguments.add(word);
    const Data description = dataWithShellScript(script, arguments);
    if (description.length() == 0) return nullptr;

    Handle<MyPDFDoc> document = MyPDFDoc::pdfDoc();
    const Handle<MyPDFDictionary> page = document->addPageWithRect({0, 0, size.width, size.height});
    const Handle<MyPDFStream> content = MyPDFStream::stream();
    content->setData(description);
    page->setContents(content);
    const Handle<MyPDFDictionary> fonts = MyPDFDictionary::make();
    fonts->setObject(MyPDFDictionary::courier(), kCourier);
    const Handle<MyPDFDictionary> resources = MyPDFDictionary::make();
    resources->setObject(fonts, kFont);
    page->setResources(resources);
    return document;
}

Data pdfDataWithPSData(const Data& bytes) {
    if (bytes.isNull() || !isOnSearchPath("gs")) return {};
    const PrivateFolder folder(temporaryPath(nullptr, nullptr));
    if (!folder.exists()) return {};
    const std::string source = folder.file("page.ps");
    if (!replaceFile(String(source.c_str()), bytes.view())) return {};
    return Data(outputOfProgram("sh", {"-c", kConversion, "sh", source, folder.file("page.pdf"), folder.path()}));
}

}  // namespace vornaset
