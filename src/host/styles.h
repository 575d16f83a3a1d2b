#pragma once
// Looking up the styles of a document by name. Names are as a person reads them: "Body", "[No character style]".

#include "host/api/types.h"
#include "support/values.h"

namespace vornaset {

/// The style of a name in one of the workspace's name tables (IID_ICHARACTERSTYLENAMETABLE and its sisters); 0 for a
/// name that the document doesn't have, for a null name and where the document, its workspace or the table is missing.
UID getStyle(IDataBase* database, PMIID table, const String& name);

UID getParaStyle(IDataBase* database, const String& name);
UID getCharStyle(IDataBase* database, const String& name);
UID getTableStyle(IDataBase* database, const String& name);
UID getCellStyle(IDataBase* database, const String& name);

}  // namespace vornaset
