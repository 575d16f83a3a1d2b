#include "pdf/pdf_doc.h"

#include <pwd.h>
#include <unistd.h>

#include <string_view>
#include <vector>

#include "pdf/graph_release.h"
#include "pdf/pdf_keys.h"
#include "support/format.h"
#include "support/paths.h"

namespace vornaset {

using namespace pdf_key;
using namespace std::string_view_literals;

namespace {

// The comment line differs with how the document came about, and stays different.
/// As eight-bit text of four characters, two bytes each.
constexpr std::string_view kHeaderOfNewDocument = "%PDF-1.3\n%\xC3\xA2\xC3\xA3\xC3\x8F\xC3\x93\n"sv;

constexpr const char* kProgramName = "Vornaset";
constexpr const char* kProgramVersion = "7.20";

/// The login name of the user, null when the system has none.
String loginName() {
    std::vector<char> room(size_t{16} * 1024);
    passwd entry{};
    passwd* found = nullptr;
    if (getpwuid_r(geteuid(), &entry, room.data(), room.size(), &found) != 0 || found == nullptr) return {};
    return String::fromDamagedUTF8(found->pw_name);
}

}  // namespace

template <>
MyPDFDoc& absentObject<MyPDFDoc>() {
    static MyPDFDoc document(MyPDFDoc::Presence::absent);
    return document;
}

// Pages refer to annotations and annotations to pages: the document lets go of the graph as a whole.
MyPDFDoc::~MyPDFDoc() {
    std::vector<Handle<MyPDFObj>> objects(pdfObjs_.begin(), pdfObjs_.end());
    objects.insert(objects.end(), pages_.begin(), pages_.end());
    for (Handle<MyPDFDictionary>* field : {&root_, &info_, &catalog_, &pagesObj_}) {
        if (*field) objects.push_back(std::move(*field));
        *field = nullptr;
    }
    pdfObjs_ = nullptr;
    pages_ = nullptr;
    GraphRelease::release(std::move(objects));
}

void MyPDFDoc::setupNew(const Data& header) {
    pdfHeader_ = header;
    info_ = MyPDFDictionary::make();
    pagesObj_ = MyPDFDictionary::pages();
    catalog_ = MyPDFDictionary::catalog(pagesObj_);
}

Handle<MyPDFDoc> MyPDFDoc::pdfDoc() {
    Handle<MyPDFDoc> document = Handle<MyPDFDoc>::adopt(new MyPDFDoc(Presence::present));
    document->setupNew(Data(std::string(kHeaderOfNewDocument)));
    document->pages_ = ObjectList<MyPDFDictionary>::make();
    return document;
}

Handle<MyPDFDoc> MyPDFDoc::pdfDoc(const Handle<MyPDFDoc>& source) {
    static const String kPdfXVersion(u"GTS_PDFXVersion");
    Handle<MyPDFDoc> document = pdfDoc();
    document->pdfHeader_ = source->pdfHeader_;
    document->catalog_->setObject(source->catalog_->objectForKeyedSubscript(kOutputIntents), kOutputIntents);
    document->info_->setObject(source->info_->objectForKeyedSubscript(kPdfXVersion), kPdfXVersion);
    document->info_->setString(loginName(), kCreator);
    document->info_->setString(stringWithFormat("%s %s", kProgramName, kProgramVersion), kProducer);
    return document;
}

Handle<MyPDFDoc> MyPDFDoc::pdfDocWithPath(const String& path, uint8_t customObjs) {
    Handle<MyPDFDoc> document = Handle<MyPDFDoc>::adopt(new MyPDFDoc(Presence::present));
    document->initWithPath(path, customObjs);
    return document;
}

String MyPDFDoc::name() const {
    return path_.isNull() ? String() : lastPathComponent(path_, 1);
}

String MyPDFDoc::description() const {
    return absent_ ? String() : String(u"\n----------------------------\n");
}

}  // namespace vornaset
