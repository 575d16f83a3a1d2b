#include "support/messages.h"

#include <utility>

#include "support/alert.h"

namespace vornaset {

String gMsg2;
uint8_t gSilent = 0;

namespace {

/// The program of windows that belongs to the library, which comes to the front before it speaks.
constexpr const char* kApplication = "com.kelmoriandev.indesign.Vornaset";

}  // namespace

uint8_t setSilent(uint8_t flag) {
    return std::exchange(gSilent, flag);
}

void setMsg2(const String& text) {
    gMsg2 = text;
}

int64_t runAlertPanel(const String& message, const String& informative, const String& defaultButton,
                      const String& alternateButton, const String& otherButton) {
    if (gSilent == 1) return static_cast<int64_t>(AlertAnswer::defaultButton);
    AlertPresenter& presenter = alertPresenter();
    presenter.activateApplication(kApplication);
    presenter.beep();
    Alert alert;
    alert.message = message;
    alert.informative = informative.isNull() ? String(u"") : informative;
    alert.defaultButton = defaultButton;
    alert.alternateButton = alternateButton;
    alert.otherButton = otherButton;
    alert.icon = dataWithResource("Keld", "png");
    alert.windowTitle = "Vornaset";
    gMsg2 = nullptr;
    return static_cast<int64_t>(presenter.run(alert));
}

void showMessage(const String& text) {
    runAlertPanel(text, gMsg2, nullptr, nullptr, nullptr);
}
bool askYesNo(const String& text) {
    return runAlertPanel(text, gMsg2, stringForKey("yes"), stringForKey("no"), nullptr) == 1;
}
bool askOkCancel(const String& text) {
    return runAlertPanel(text, gMsg2, stringForKey("ok"), stringForKey("cancel"), nullptr) == 1;
}
int64_t askYesNoCancel(const String& text) {
    return runAlertPanel(text, gMsg2, stringForKey("yes"), stringForKey("no"), stringForKey("cancel"));
}
int64_t askYesNoIgnore(const String& text) {
    return runAlertPanel(text, gMsg2, stringForKey("yes"), stringForKey("ignore"), stringForKey("no"));
}

bool msgBoxYesNo(const String& text) {
    return askYesNo(text);
}

void msgBox(const std::exception& exception) {
    const auto* own = dynamic_cast<const Exception*>(&exception);
    msgBox(String::fromDamagedUTF8(own != nullptr ? own->reason() : exception.what()));
}

void msgBoxWithError(const Error& error) {
    msgBox(error.localizedDescription());
}

}  // namespace vornaset
