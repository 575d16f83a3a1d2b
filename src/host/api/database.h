#pragma once
// A database holds the persistent objects of one document. It is no counted object: it lives as long as its document.

#include "host/api/strings.h"
#include "host/api/unknown.h"

class IDataBase {
  public:
    /// The object of a UID under an interface, with a reference for the caller; null when there is none.
    virtual IPMUnknown* Instantiate(UID uid, PMIID interfaceId) = 0;
    /// The document.
    virtual UID GetRootUID() = 0;
    /// The file that the document was saved to; empty when never.
    virtual IDFile GetSaveFile() = 0;
    /// The file that it was read from; empty for a document made new.
    virtual IDFile GetReadFile() = 0;
    virtual void SetModified(bool modified) = 0;

  protected:
    virtual ~IDataBase() = default;
};

template <class T>
InterfacePtr<T>::InterfacePtr(IDataBase* database, UID uid, PMIID interfaceId) {
    if (database) interface_ = static_cast<T*>(database->Instantiate(uid, interfaceId));
}

namespace DBUtils {
/// True for the database of a document that is open now; false for null and for a closed one's.
bool IsValidDataBase(IDataBase* database);
}  // namespace DBUtils
