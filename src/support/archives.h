#pragma once
// Values as bytes, whole: every kind of text and number, order of keys, changeable or not, and objects of registered
// classes. The keyed form is an XML property list with a table of objects; the older, non-keyed form, which is still
// read, is the value's bare property list.

#include <functional>

#include "support/values.h"

namespace vornaset {

/// An object that can be archived.
class ArchivableObject : public Object {
  public:
    /// The name under which its class is registered for reading. Not null.
    virtual String archiveClass() const = 0;
    /// What it needs to come back.
    virtual Dictionary archiveFields() const = 0;
};

/// Makes an object of its fields; may throw, or give null, when they don't fit.
using ObjectMaker = std::function<std::shared_ptr<Object>(const Dictionary& fields)>;
/// Objects of that class can be read from now on. Throws InvalidArgumentException for a null name.
void registerArchiveClass(const String& archiveClass, ObjectMaker maker);

/// The keyed archive of a value; of null too. Throws InvalidArgumentException for a value that nests deeper than 512
/// containers, so that one which holds itself ends, and for one that holds an object that can't be archived.
Data archivedDataWithObj(const Value& object);
/// The value of a keyed archive; when that gives null, of the older form. Null for null data, for what is neither, and
/// for a keyed archive with a class that isn't registered. Throws nothing.
Value objWithArchivedData(const Data& data);

}  // namespace vornaset
