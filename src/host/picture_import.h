#pragma once
// Getting files into a document.

#include "host/api/types.h"
#include "support/values.h"

namespace vornaset {

/// Imports a file as an item without a place; its UID. 0 when the host can't import it or knows no import.
UID importFile(IDataBase* database, const String& path);

/// Which page of a PDF file of several pages the host imports from now on, from 1. Nobody puts the setting back.
void setPDFPlacePage(int32_t page);

}  // namespace vornaset
