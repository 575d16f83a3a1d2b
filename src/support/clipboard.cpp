#include "support/clipboard.h"

#include <utility>

#include "support/alert.h"
#include "support/strings.h"

namespace vornaset {

namespace {

class PasteboardClipboard : public Clipboard {
  public:
    String string() const override { return Pasteboard::withName(kGeneralPasteboard).stringForType(kStringType); }
    void setString(const String& text) override {
        Pasteboard board = Pasteboard::withName(kGeneralPasteboard);
        board.clear();
        board.setString(text, kStringType);
    }
};

std::shared_ptr<Clipboard>& installed() {
    static std::shared_ptr<Clipboard> clipboard = std::make_shared<PasteboardClipboard>();
    return clipboard;
}

}  // namespace

Clipboard::~Clipboard() = default;

Clipboard& generalPasteboard() {
    return *installed();
}

std::shared_ptr<Clipboard> setGeneralPasteboard(std::shared_ptr<Clipboard> clipboard) {
    if (!clipboard) clipboard = std::make_shared<PasteboardClipboard>();
    return std::exchange(installed(), std::move(clipboard));
}

void beep() {
    alertPresenter().beep();
}

void setPasteboardText(const String& text) {
    generalPasteboard().setString(text);
}

String stringFromPasteboard(const String& defaultText) {
    String text = generalPasteboard().string();
    return text.isNull() ? defaultText : text;
}

String pathFromPasteboard(const Pasteboard& pasteboard) {
    return firstObject(pasteboard.propertyListForType(kFileNamesType).array()).string();
}

void dumpPasteboard(const Pasteboard& /*pasteboard*/) {}

}  // namespace vornaset
