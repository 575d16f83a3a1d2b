#include "host/my_doc.h"

namespace vornaset {

IDocument* frontDoc() {
    Utils<ILayoutUtils> layout;
    return layout ? layout->GetFrontDocument() : nullptr;
}

UIDRef frontDocRef() {
    return ::GetUIDRef(frontDoc());
}

String pathForDoc(IDataBase* database) {
    if (!DBUtils::IsValidDataBase(database)) return {};
    IDFile file = database->GetSaveFile();
    if (file.IsEmpty()) file = database->GetReadFile();
    return file.IsEmpty() ? String() : String::fromDamagedUTF8(file.GetPath());
}

String pathForDoc(IDocument* document) {
    return document ? pathForDoc(::GetDataBase(document)) : String();
}

String pathForDoc(const UIDRef& document) {
    return pathForDoc(document.GetDataBase());
}

MyDoc::MyDoc(const UIDRef& document)
    : document_(InterfacePtr<IDocument>(document).get()),
      database_(document.GetDataBase()),
      path_(pathForDoc(document.GetDataBase())) {}

MyDoc::MyDoc(IDocument* document)
    : document_(document ? document : vornaset::frontDoc()),
      database_(document_ ? ::GetDataBase(document_) : nullptr) {}

int32_t MyDoc::init() {
    *this = MyDoc();
    return 0;
}

uint8_t MyDoc::enumSpreads(SpreadCallback callback, void* data) const {
    return EnumSpreads(document_, callback, data);
}

uint8_t MyDoc::enumVisibleBoxes(ItemCallback callback, void* data) const {
    return enumBoxes(callback, data);
}

uint8_t MyDoc::enumDocLayers(DocumentLayerCallback callback, void* data) const {
    return EnumDocLayers(document_, callback, data);
}

uint8_t MyDoc::enumStories(StoryCallback callback, void* data) const {
    return EnumStories(document_, callback, data);
}

}  // namespace vornaset
