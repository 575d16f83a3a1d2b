#include "host/doc_files.h"

#include "host/api/host.h"
#include "host/enumerators.h"
#include "host/host_operations.h"
#include "host/my_doc.h"
#include "support/log.h"
#include "support/strings.h"

namespace vornaset {

namespace {

constexpr K2::UIFlags kSavingFlags = 2;
constexpr int16_t kNoFileHandler = -1;

struct PathSearch {
    const String& path;
    IDocument* found = nullptr;
};

unsigned char findPath(IDocument* document, const String& path, void* search) {
    auto& wanted = *static_cast<PathSearch*>(search);
    if (!stringsAreEqual(path, wanted.path)) return 1;
    wanted.found = document;
    return 0;
}

InterfacePtr<IDocumentFileHandler> fileHandlerOf(const UIDRef& document) {
    Utils<IDocumentUtils> documents;
    return InterfacePtr<IDocumentFileHandler>(Adopt::Reference,
                                              documents ? documents->QueryFileHandler(document) : nullptr);
}

int16_t lastError() {
    return static_cast<int16_t>(ErrorUtils::PMGetGlobalErrorCode());
}

enum class OldFile { RemoveOnceAgreed, RemoveFirst };

int16_t saveCopy(const UIDRef& document, const String& path, OldFile oldFile) {
    InterfacePtr<IDocumentFileHandler> handler = fileHandlerOf(document);
    if (!handler) return kNoFileHandler;
    if (oldFile == OldFile::RemoveFirst) removeFile(path);
    if (handler->CanSaveACopy(document)) {
        if (oldFile == OldFile::RemoveOnceAgreed) removeFile(path);
        handler->SaveACopy(document, IDFileWithPath(path), kSavingFlags, 0, 0);
    }
    return lastError();
}

ErrorCode openLayoutWindow(const UIDRef& document) {
    InterfacePtr<IPMCommand> command(Adopt::Reference, CmdUtils::CreateCommand(kOpenLayoutWindowCmdBoss));
    if (!command) return kFailure;
    command->SetItemList(UIDList(document));
    return CmdUtils::ProcessCommand(command.get());
}

/// Ready to be processed; null when the host can't open files.
InterfacePtr<IPMCommand> openCommand(const String& path, int32_t flags) {
    InterfacePtr<IPMCommand> command(Adopt::Reference, CmdUtils::CreateCommand(kOpenDocumentCmdBoss));
    InterfacePtr<IOpenFileCmdData> data(command.get());
    if (!data) return {};
    data->Set(IDFileWithPath(path), 0, 0, flags, flags);
    return command;
}

}  // namespace

// --- Finding

IDocument* docForPath(const String& path) {
    PathSearch search{path};
    EnumDocs(findPath, &search);
    return search.found;
}

UIDRef docRefForPath(const String& path) {
    return ::GetUIDRef(docForPath(path));
}

uint8_t docIsOpen(const String& path) {
    PathSearch search{path};
    return EnumDocs(findPath, &search) == 0;
}

int32_t getNumberOfDocs() {
    int32_t count = 0;
    EnumDocs(
        [](IDocument*, const String&, void* counter) -> unsigned char {
            ++*static_cast<int32_t*>(counter);
            return 1;
        },
        &count);
    return count;
}

// --- Opening and windows

UIDRef openDoc1(const String& path) {
    InterfacePtr<IPMCommand> command = openCommand(path, 0);
    if (!command || CmdUtils::ProcessCommand(command.get()) != kSuccess) return UIDRef();
    return command->GetResultList().GetRef(0);
}

UIDRef openDoc2(const String& path, uint8_t option) {
    constexpr int32_t seventhArgument = 1;
    UIDRef opened;
    Utils<IDocumentUtils> documents;
    if (documents) documents->OpenDocument(opened, IDFileWithPath(path), 0, 0, 0, option, seventhArgument);
    return opened;
}

int32_t openWindowForDoc(const UIDRef& document) {
    openLayoutWindow(document);
    return 0;
}

uint8_t makeDocActive(IDocument* document) {
    if (!document) return 0;
    Utils<IWindowUtils> windows;
    InterfacePtr<ILayoutWindow> window(Adopt::Reference,
                                       windows ? windows->QueryLayoutWindow(::GetDataBase(document)) : nullptr);
    if (!window) return 0;
    window->BringToFront();
    return 1;
}

uint8_t makeDocActive(IDataBase* database) {
    return makeDocActive(documentOfDataBase(database).get());
}

uint8_t makeDocActive(const UIDRef& document) {
    return makeDocActive(InterfacePtr<IDocument>(document).get());
}

// --- Saving

int16_t saveDoc(const UIDRef& document) {
    InterfacePtr<IDocumentFileHandler> handler = fileHandlerOf(document);
    if (!handler) return kNoFileHandler;
    if (handler->CanSave(document)) handler->Save(document, kSavingFlags);
    return lastError();
}

int16_t saveDoc(IDocument* document) {
    return saveDoc(::GetUIDRef(document));
}

int16_t saveDocAs(const UIDRef& document, const String& path) {
    InterfacePtr<IDocumentFileHandler> handler = fileHandlerOf(document);
    if (!handler) return kNoFileHandler;
    if (handler->CanSaveAs(document)) handler->SaveAs(document, IDFileWithPath(path), kSavingFlags, 0, 0);
    return lastError();
}

int16_t saveDocAs(IDocument* document, const String& path) {
    return saveDocAs(::GetUIDRef(document), path);
}

int16_t saveCopyAs(IDocument* document, const String& path) {
    return saveCopyAs(::GetUIDRef(document), path);
}

int16_t saveCopyAs(const UIDRef& document, const String& path) {
    return saveCopy(document, path, OldFile::RemoveOnceAgreed);
}

// --- Closing

void closeDoc(const UIDRef& document) {
    InterfacePtr<IDocumentFileHandler> handler = fileHandlerOf(document);
    if (handler) handler->Close(document, 0, 0, 1);
}

void closeDoc(IDocument* document) {
    closeDoc(::GetUIDRef(document));
}

void closeDocWindows(const UIDRef& document) {
    InterfacePtr<IPresentationList> windows(document);
    if (windows) windows->CloseAll();
}

void closeDoc2(const UIDRef& document, uint8_t deleteFile) {
    const String path = pathForDoc(document);
    closeDocWindows(document);
    Utils<IDocumentUtils> documents;
    if (documents) documents->CloseDocument(document, 0);
    if (deleteFile == 1) removeFile(path);
}

void closeDoc2(IDocument* document) {
    closeDoc2(::GetUIDRef(document), 0);
}

void closeDocs() {
    EnumDocs(
        [](IDocument* document, const String&, void*) -> unsigned char {
            closeDoc2(document);
            return 1;
        },
        nullptr);
}

void closeDocIfOpen(const String& path, uint8_t deleteFile) {
    if (IDocument* document = docForPath(path)) closeDoc2(document);
    if (deleteFile == 1) removeFile(path);
}

// --- Redrawing

void redrawDoc(IDocument* document) {
    IDocument* drawn = document ? document : frontDoc();
    Utils<ILayoutUtils> layout;
    if (drawn && layout) layout->InvalidateViews(drawn);
}

void redrawDoc(IDataBase* database) {
    redrawDoc(documentOfDataBase(database).get());
}

void redrawDoc(const UIDRef& document) {
    redrawDoc(InterfacePtr<IDocument>(document).get());
}

void redrawDocs() {
    EnumDocs(
        [](IDocument* document, const String&, void*) -> unsigned char {
            redrawDoc(document);
            return 1;
        },
        nullptr);
}

// --- The handle

std::unique_ptr<MyDoc> MyDoc::frontDoc(uint8_t create) {
    if (IDocument* front = vornaset::frontDoc()) return std::make_unique<MyDoc>(front);
    if (create != 1) return nullptr;
    UIDRef created;
    Utils<IDocumentUtils> documents;
    if (!documents || documents->CreateDocument(created, nullptr, 0, 0) != kSuccess) return nullptr;
    if (openLayoutWindow(created) != kSuccess) return nullptr;
    IDocument* front = vornaset::frontDoc();
    return front ? std::make_unique<MyDoc>(front) : nullptr;
}

std::unique_ptr<MyDoc> MyDoc::docWithPath(const String& path, uint32_t) {
    auto document = std::make_unique<MyDoc>();
    return document->open(path) == 0 ? std::move(document) : nullptr;
}

int16_t MyDoc::open(const String& path) {
    constexpr int16_t noCommand = -1;
    InterfacePtr<IPMCommand> command = openCommand(path, 1);
    if (!command) return noCommand;
    MyLog("MyDoc::open: %@", path);
    const auto result = static_cast<int16_t>(CmdUtils::ProcessCommand(command.get()));
    if (result != 0) return result;
    IDocument* front = vornaset::frontDoc();
    if (command->GetResultList().GetRef(0) != ::GetUIDRef(front)) MyLog("####\tMyDoc::open: docRef != docRef2");
    document_ = front;
    database_ = front ? ::GetDataBase(front) : nullptr;
    path_ = path;
    return 0;
}

String MyDoc::getPath(uint8_t folderOnly) const {
    const String path = path_.isNull() ? pathForDoc(document_) : path_;
    if (folderOnly != 1 || path.isNull()) return path;
    const std::u16string_view text = path.view();
    const size_t slash = text.find_last_of(u'/');
    if (slash == std::u16string_view::npos) return u"";
    return slash == 0 ? String(u"/") : String(text.substr(0, slash));
}

String MyDoc::getName(uint8_t keepExtension) const {
    return lastPathComponent(getPath(0), keepExtension);
}

int16_t MyDoc::save() const {
    return saveDoc(document_);
}

int16_t MyDoc::saveAs(const String& path) const {
    return saveDocAs(document_, path);
}

int16_t MyDoc::saveACopy(const String& path) const {
    return saveCopy(::GetUIDRef(document_), path, OldFile::RemoveFirst);
}

void MyDoc::close() const {
    const UIDRef document = ::GetUIDRef(document_);
    if (document.GetDataBase() && document.GetUID() != kInvalidUID) closeDoc(document);
}

void MyDoc::redraw() const {
    redrawDoc(document_);
}

void MyDoc::setModified(uint8_t modified) const {
    if (DBUtils::IsValidDataBase(database_)) database_->SetModified(modified != 0);
}

}  // namespace vornaset
