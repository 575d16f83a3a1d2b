#pragma once
// The user's applications: opening documents in them, showing files, coming to the front. All of it goes the desktop's
// own ways. An application's name is the file name of its desktop entry ("org.example.Editor.desktop"), a part of it,
// or the name that it shows; its bundle identifier is the entry's identifier ("org.example.Editor") and its bundle path
// the entry's path. Three names stand for a role when no application bears them: "Finder" is what opens folders,
// "TextEdit" and "BBEdit" are what opens plain text. Nothing here throws.

#include <cstdint>

#include "support/values.h"

namespace vornaset {

/// openDocWithApp with the calling application giving up the front: a folder in "Finder", anything else in the
/// application for it.
void openDocWithPath(const String& path);
/// Opens the document in the application of that name; null means the one that appNameForFileExtension finds for the
/// path's extension, with "txt" and "TextEdit" as fall-backs, and if that isn't to be had the desktop's own opener
/// (xdg-open). True if it opened, that is, if the application was started; a missing document doesn't open. The new
/// application decides here whether it comes to the front: `deactivate` is taken and has no effect.
bool openDocWithApp(const String& path, const String& appName, uint8_t deactivate);
/// The file name of the preferred application for the extension, else for the fall-back extension, else the fall-back
/// application.
String appNameForFileExtension(const String& extension, const String& fallbackExtension, const String& fallbackApp);
/// Opens a URL in the application for its scheme; a local file as a document. True if it opened.
bool openURL(const String& url);
/// Shows the item selected in the file browser; where the browser can't do that, its folder.
void selectDoc(const String& path);

/// The path of the first running application with this identifier, as far as a desktop started it and said so in its
/// environment; if none runs, that of the installed one; null if there is none.
String appPathForBundleID(const String& bundleIdentifier);
/// Brings the application with this identifier to the front, if it runs; see AlertPresenter::activateApplication. Null
/// means "com.kelmoriandev.indesign.Vornaset".
void setFrontProcess(const String& bundleIdentifier);

/// Puts the text, read as a format, on the general pasteboard, and launches "BBEditWithClipboard". An empty text beeps,
/// and launches all the same.
void openWithBBEdit(const String& text);
/// The same with the data as text.
void openWithBBEdit(const Data& data);
/// Writes the text as UTF-8 to the path in one step, whatever comes of it, and opens the path in "BBEdit".
void openWithBBEdit(const String& text, const String& path);

/// Opens the log in the user's text editor.
void showLogFile();

}  // namespace vornaset
