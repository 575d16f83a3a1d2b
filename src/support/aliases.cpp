// What an alias points at.

#include "support/desktop_entry.h"
#include "support/paths.h"
#include "support/platform_path.h"

namespace vornaset {

namespace {

namespace fs = std::filesystem;

/// Empty when it points at nothing.
fs::path targetOfLink(const fs::path& link) {
    std::error_code error;
    fs::path target = fs::canonical(link, error);
    return error ? fs::path() : target;
}

fs::path targetOfLinkFile(const fs::path& place) {
    const auto entry = DesktopEntryFile::atPath(place.native());
    if (!entry || entry->value("Desktop Entry", "Type") != "Link") return {};
    const auto target = pathOfFileURL(entry->text("Desktop Entry", "URL"));
    std::error_code error;
    return target && fs::exists(*target, error) ? fs::path(*target) : fs::path();
}

}  // namespace

String resolvePath(const String& path) {
    const fs::path place = platformPathOfItem(path);
    std::error_code error;
    fs::path target;
    if (fs::is_symlink(fs::symlink_status(place, error))) {
        target = targetOfLink(place);
    } else if (place.extension() == ".desktop") {
        target = targetOfLinkFile(place);
    }
    const String text = target.empty() ? String() : textOfPath(target);
    return text.isNull() ? path : text;
}

}  // namespace vornaset
