#include "widgets/window_system.h"

#include <QtCore/QLibraryInfo>
#include <QtCore/QLocale>
#include <QtCore/QSocketNotifier>
#include <QtCore/QTranslator>
#include <QtCore/QtGlobal>
#include <QtWidgets/QApplication>
#include <utility>

#include "support/alert.h"
#include "support/clipboard.h"
#include "support/raise_exception.h"
#include "support/run_loop.h"
#include "support/string_tables.h"
#include "widgets/alert_window.h"
#include "widgets/nibs.h"
#include "widgets/qt_text.h"
#include "widgets/user_clipboard.h"

namespace vornaset {

namespace {

std::unique_ptr<QApplication> makeApplication(int& argumentCount, char** arguments) {
    if (qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr) return nullptr;
    if (QCoreApplication::instance() != nullptr) {
        raiseException("no windows can be opened: the process has set itself up without a window system");
    }
    if (!WindowSystem::isThere()) {
        raiseException(
            "no windows can be opened: neither DISPLAY nor WAYLAND_DISPLAY nor QT_QPA_PLATFORM names a window system");
    }
    return std::make_unique<QApplication>(argumentCount, arguments);
}

}  // namespace

class WindowSystem::State {
  public:
    State(int& argumentCount, char** arguments)
        : application_(makeApplication(argumentCount, arguments)),
          loopIsDue_(RunLoop::current().descriptor(), QSocketNotifier::Read),
          presenterBefore_(setAlertPresenter(std::make_shared<WindowPresenter>())),
          clipboardBefore_(setGeneralPasteboard(std::make_shared<UserClipboard>())) {
        QObject::connect(&loopIsDue_, &QSocketNotifier::activated, &loopIsDue_, [] { RunLoop::current().turn(0); });
        const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
        if (texts_.load(QLocale(qtText(preferredLanguageCode())), "qtbase", "_", folder)) {
            QCoreApplication::installTranslator(&texts_);
        }
    }
    ~State() {
        setGeneralPasteboard(std::move(clipboardBefore_));
        setAlertPresenter(std::move(presenterBefore_));
        releaseNibObjects();
    }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

  private:
    std::unique_ptr<QApplication> application_;  ///< null when it is somebody else's
    QSocketNotifier loopIsDue_;
    QTranslator texts_;  ///< of the file panels and the other dialogs that the window system's library brings along
    std::shared_ptr<AlertPresenter> presenterBefore_;
    std::shared_ptr<Clipboard> clipboardBefore_;
};

bool WindowSystem::isThere() {
    if (qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr) return true;
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
           !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

WindowSystem::WindowSystem(int& argumentCount, char** arguments)
    : state_(std::make_unique<State>(argumentCount, arguments)) {}

WindowSystem::~WindowSystem() = default;

}  // namespace vornaset
