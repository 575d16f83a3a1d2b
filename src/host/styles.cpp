#include "host/styles.h"

#include "host/api/host.h"
#include "host/host_operations.h"

namespace vornaset {

UID getStyle(IDataBase* database, PMIID table, const String& name) {
    if (name.isNull()) return kInvalidUID;
    InterfacePtr<IDocument> document = documentOfDataBase(database);
    if (!document) return kInvalidUID;
    InterfacePtr<IStyleNameTable> styles(document->GetDocWorkSpace(), table);
    return styles ? styles->FindByName(pmString(name)) : kInvalidUID;
}

UID getParaStyle(IDataBase* database, const String& name) {
    return getStyle(database, IID_IPARAGRAPHSTYLENAMETABLE, name);
}

UID getCharStyle(IDataBase* database, const String& name) {
    return getStyle(database, IID_ICHARACTERSTYLENAMETABLE, name);
}

UID getTableStyle(IDataBase* database, const String& name) {
    return getStyle(database, IID_ITABLESTYLENAMETABLE, name);
}

UID getCellStyle(IDataBase* database, const String& name) {
    return getStyle(database, IID_ICELLSTYLENAMETABLE, name);
}

}  // namespace vornaset
