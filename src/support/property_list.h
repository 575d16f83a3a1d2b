#pragma once
// XML property lists, the form in which values travel between processes.

#include "support/values.h"

namespace vornaset {

/// The XML property list of a value. Null for a null value and for one that holds an object or a number that isn't
/// finite. Characters that XML doesn't have become U+FFFD.
Data propertyListData(const Value& value);
/// The value of a property list, with mutable containers all through. Null for null data and anything that is no
/// property list, nests deeper than 256 containers or has a document type declaration of its own making.
Value propertyListWithData(const Data& data);

}  // namespace vornaset
