#pragma once
// How the string table reads its three XML forms (see string_tables.h).

#include <string_view>
#include <vector>

#include "support/error.h"
#include "support/values.h"

namespace vornaset {

enum class StringTableForm { flat, byLanguage };

struct StringTableFile {
    Dictionary table;  ///< null when the file doesn't parse or has a root that the form doesn't know
    Error error;       ///< why it doesn't parse; no error otherwise
};

/// Reads the bytes of a table. Of StringTableForm::byLanguage the root's name chooses between sections and entries. A
/// document type declaration is an error: tables have none, and entities of foreign making aren't wanted.
StringTableFile readStringTable(std::string_view bytes, StringTableForm form, const String& languageCode);

}  // namespace vornaset
