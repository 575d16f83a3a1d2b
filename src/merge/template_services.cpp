#include "merge/template_services.h"

#include <chrono>

#include "host/api/host.h"
#include "host/host_operations.h"
#include "host/my_doc.h"
#include "support/dictionary_access.h"
#include "support/paths.h"

namespace vornaset {

namespace {

String folderOf(const String& path) {
    std::u16string_view text = path.view();
    while (text.size() > 1 && text.ends_with(u'/')) text.remove_suffix(1);
    const size_t slash = text.find_last_of(u'/');
    if (slash == std::u16string_view::npos) return u"";
    return slash == 0 ? String(u"/") : String(text.substr(0, slash));
}

}  // namespace

String tmpPathForDoc(const UIDRef& document) {
    const String path = pathForDoc(document);
    if (!path.isNull()) return path;
    const String folder = temporaryPath(nullptr, nullptr);
    InterfacePtr<IDocument> found(document);
    if (!found) return folder;
    PMString name;
    found->GetName(name);
    return stringByAppendingPathComponents(folder, stringWithPMString(name), nullptr);
}

String outputPath(const String& path) {
    return path.isNull() ? String() : createDir(folderOf(path), u"Vornaset");
}

uint8_t setShowPreviewAfterPDFExport(uint8_t show) {
    InterfacePtr<IPDFExportViewPrefs> preferences(sessionWorkspace().get());
    if (!preferences) return show;
    const uint8_t former = preferences->GetShowAfterExport() ? 1 : 0;
    preferences->SetShowAfterExport(show != 0);
    return former;
}

String dateString(DateStyle style, const std::optional<Date>& date) {
    const std::chrono::duration<double> now = std::chrono::system_clock::now().time_since_epoch();
    return dateInStyle(date.value_or(Date{now.count()}), style);
}

void addDateString(const Dictionary& dictionary, const String& key, const std::optional<Date>& when, DateStyle style) {
    setStringForKey(dictionary, key, dateString(style, when));
}

void hideFloatingWindows() {}

void showFloatingWindows() {}

}  // namespace vornaset
