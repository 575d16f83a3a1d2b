#pragma once
// Between the library's texts and those of the window system. Both are UTF-16: nothing is converted, nothing is lost
// but the difference between null and empty.

#include <QtCore/QString>

#include "support/values.h"

namespace vornaset {

/// Null gives the empty text.
inline QString qtText(const String& text) {
    const std::u16string_view units = text.view();
    return QString::fromUtf16(units.data(), static_cast<qsizetype>(units.size()));
}

/// Never null.
inline String textWithQt(const QString& text) {
    return String(
        std::u16string_view(reinterpret_cast<const char16_t*>(text.utf16()), static_cast<size_t>(text.size())));
}

/// For buttons, menus, tabs and boxes, where an "&" marks the next character as the key that reaches it: the text with
/// every "&" shown as it stands.
inline QString qtTitle(const String& text) {
    return qtText(text).replace(u'&', QStringLiteral("&&"));
}

/// What of such a title is shown.
inline String titleWithQt(const QString& title) {
    QString shown;
    for (qsizetype at = 0; at < title.size(); ++at) {
        if (title[at] == u'&' && ++at == title.size()) break;
        shown += title[at];
    }
    return textWithQt(shown);
}

}  // namespace vornaset
