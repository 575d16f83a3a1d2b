#pragma once
// The applications that the desktop knows, by the desktop's own files: desktop entries for the applications, the shared
// MIME database for types, mimeapps.list for what opens what (freedesktop.org: Desktop Entry, Shared MIME-info and
// MIME applications; XDG Base Directory for the places). Everything is looked up afresh at each call.

#include <optional>
#include <string>
#include <string_view>

#include "support/desktop_entry.h"
#include "support/launching.h"

namespace vornaset {

struct Application {
    std::string identifier;  ///< "org.example.Editor": the entry's place without ".desktop"; empty for a bare program
    std::string path;        ///< of the desktop entry, or of the program
    DesktopEntryFile entry;  ///< empty for a bare program

    /// How it is started with a document or, with an empty one, without. Nothing when that can't be told.
    std::optional<Launch> launchWith(const Document& document) const;
};

/// The application of that identifier, if it is installed and can be started.
std::optional<Application> applicationWithIdentifier(const std::string& identifier);
/// By identifier, with or without ".desktop"; by the last part of an identifier; by the name that it shows, case
/// ignored; or a program of that name in PATH.
std::optional<Application> applicationNamed(const std::string& name);
/// The preferred application for a MIME type, or else for one of the types that it is a kind of.
std::optional<Application> applicationForType(const std::string& type);

/// The MIME type of files with that extension (case ignored); empty when nobody knows it.
std::string typeOfExtension(const std::string& extension);

/// The desktop entry from which the first running application of that identifier was started, as its environment says;
/// nothing when none runs.
std::optional<std::string> runningApplicationFile(const std::string& identifier);

}  // namespace vornaset
