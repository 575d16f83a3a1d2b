#include "support/alert.h"

#include <unistd.h>

#include <cstdio>
#include <string>
#include <utility>

namespace vornaset {

namespace {

/// Speaks where no window can be opened. Nobody is there to press a button, so the default one is taken and named.
class StandardErrorPresenter : public AlertPresenter {
  public:
    void beep() override {
        if (isatty(STDERR_FILENO) == 1) std::fputc('\a', stderr);
    }

    AlertAnswer run(const Alert& alert) override {
        std::string text = alert.windowTitle.utf8() + ": " + alert.message.utf8() + "\n";
        if (!alert.informative.isEmpty()) text += alert.informative.utf8() + "\n";
        const bool isQuestion = !alert.alternateButton.isNull() || !alert.otherButton.isNull();
        if (isQuestion && !alert.defaultButton.isNull()) text += "[" + alert.defaultButton.utf8() + "]\n";
        std::fwrite(text.data(), 1, text.size(), stderr);
        std::fflush(stderr);
        return AlertAnswer::defaultButton;
    }
};

std::shared_ptr<AlertPresenter>& presenterInForce() {
    static std::shared_ptr<AlertPresenter> presenter = std::make_shared<StandardErrorPresenter>();
    return presenter;
}

}  // namespace

AlertPresenter::~AlertPresenter() = default;

void AlertPresenter::activateApplication(const String&) {}

AlertPresenter& alertPresenter() {
    return *presenterInForce();
}

std::shared_ptr<AlertPresenter> setAlertPresenter(std::shared_ptr<AlertPresenter> presenter) {
    if (!presenter) presenter = std::make_shared<StandardErrorPresenter>();
    return std::exchange(presenterInForce(), std::move(presenter));
}

}  // namespace vornaset
