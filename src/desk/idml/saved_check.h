#pragma once
// A written package, read again, against the document that it is to hold.

#include "desk/idml/package_changes.h"
#include "desk/model/document.h"

namespace desk {

/// Throws InputError with the first difference: pages, items with place, path and labels, stories with formats.
void checkSaved(const Document& document, const Document& saved, const PackageChanges& changes);

}  // namespace desk
