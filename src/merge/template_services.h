#pragma once
// Small services around a template: where its output goes, what the host does after an export, dates as text.

#include <cstdint>
#include <optional>

#include "host/api/types.h"
#include "support/locale_text.h"
#include "support/values.h"

namespace vornaset {

/// The document's own path. One that never was a file gets a path of its name in the user's temporary folder, and a
/// reference that names no document that folder.
String tmpPathForDoc(const UIDRef& document);

/// The folder "Vornaset" beside the file or folder at the path, which is made; its path. Null, and nothing made, for
/// null.
String outputPath(const String& path);

/// Sets whether the host shows the file after a PDF export. The former setting, so that a caller can put it back; the
/// new one where the host has no such setting.
uint8_t setShowPreviewAfterPDFExport(uint8_t show);

/// The date without its time in a style of the user's locale; null means now.
String dateString(DateStyle style, const std::optional<Date>& date);
/// The same as the value of a key (by key path).
void addDateString(const Dictionary& dictionary, const String& key, const std::optional<Date>& when, DateStyle style);

/// Both do nothing: there are no floating windows.
void hideFloatingWindows();
void showFloatingWindows();

}  // namespace vornaset
