#pragma once
// The steps that every wrapper of this layer shares: a database's document, a command on a list of items; and text into
// and out of the host.

#include "host/api/host.h"
#include "support/paths_host.h"
#include "support/values.h"

namespace vornaset {

/// The document of a database with a reference; null for a null database or one without a document.
InterfacePtr<IDocument> documentOfDataBase(IDataBase* database);

/// The session's settings with a reference; null without a session and where the host keeps none.
InterfacePtr<IPMUnknown> sessionWorkspace();

/// Makes a command of a class, gives it the items, processes it and gives its result. 0 when the host doesn't know the
/// class.
ErrorCode processOnItems(ClassID commandClass, const UIDList& items);

}  // namespace vornaset
