#include "widgets/user_clipboard.h"

#include <QtCore/QMimeData>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>

#include "widgets/qt_text.h"

namespace vornaset {

String UserClipboard::string() const {
    const QMimeData* content = QGuiApplication::clipboard()->mimeData();
    return content != nullptr && content->hasText() ? textWithQt(content->text()) : String();
}

void UserClipboard::setString(const String& text) {
    if (text.isNull()) {
        QGuiApplication::clipboard()->clear();
    } else {
        QGuiApplication::clipboard()->setText(qtText(text));
    }
}

}  // namespace vornaset
