#include "widgets/modal_windows.h"

#include <QtCore/QEvent>
#include <QtCore/QEventLoop>
#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>
#include <QtWidgets/QDialog>
#include <algorithm>
#include <vector>

#include "support/log.h"

namespace vornaset {

namespace {

class ModalRun;

/// The innermost last. They lie on the stack of those who wait for them.
std::vector<ModalRun*>& modalRuns() {
    static std::vector<ModalRun*> runs;
    return runs;
}

/// One modal run, from showing the window to its end.
class ModalRun : public QObject {
  public:
    explicit ModalRun(QWidget& window) : window_(&window), modalityBefore_(window.windowModality()) {
        if (window.isVisible() && modalityBefore_ != Qt::ApplicationModal) window.hide();  // else it has no effect
        window.setWindowModality(Qt::ApplicationModal);
        window.setAttribute(Qt::WA_QuitOnClose, false);
        window.installEventFilter(this);
        connect(&window, &QObject::destroyed, this, [this] { end(kModalRunAborted); });
        if (auto* dialog = qobject_cast<QDialog*>(&window)) {
            connect(dialog, &QDialog::finished, this, [this](int result) { end(result); });
        }
        modalRuns().push_back(this);
    }
    ~ModalRun() override {
        std::erase(modalRuns(), this);
        if (!window_) return;
        window_->removeEventFilter(this);
        window_->setWindowModality(modalityBefore_);
    }

    bool isOf(const QWidget* window) const { return window_ == window && !hasEnded_; }

    int64_t run() {
        window_->show();
        window_->raise();
        window_->activateWindow();
        if (!hasEnded_) loop_.exec();
        return result_;
    }

    void end(int64_t result) {
        if (hasEnded_) return;
        hasEnded_ = true;
        result_ = result;
        loop_.quit();
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        // A dialog is hidden first and tells its result at once behind that: the question waits for a turn.
        if (event->type() == QEvent::Hide && !event->spontaneous()) {
            QMetaObject::invokeMethod(
                this, [this] { end(kModalRunAborted); }, Qt::QueuedConnection);
        }
        return QObject::eventFilter(watched, event);
    }

  private:
    QPointer<QWidget> window_;
    Qt::WindowModality modalityBefore_;
    QEventLoop loop_;
    int64_t result_ = kModalRunAborted;
    bool hasEnded_ = false;
};

ModalRun* modalRunOf(const QWidget* window) {
    if (window == nullptr) return nullptr;
    const auto& runs = modalRuns();
    const auto found =
        std::find_if(runs.begin(), runs.end(), [&](const ModalRun* run) { return run->isOf(window->window()); });
    return found == runs.end() ? nullptr : *found;
}

}  // namespace

int64_t runModalForWindow(QWidget* window) {
    if (window == nullptr) {
        MyLog("####\trunModalForWindow: NULL");
        return kModalRunAborted;
    }
    const QPointer<QWidget> guard(window->window());
    const int64_t result = ModalRun(*guard).run();
    if (guard) guard->close();
    return result;
}

void endModalRun(QWidget* window, int64_t result) {
    if (ModalRun* run = modalRunOf(window)) run->end(result);
}

bool isRunningModally(const QWidget* window) {
    return modalRunOf(window) != nullptr;
}

bool ptIsVisible(const Point& point) {
    if (point.x == 0 && point.y == 0) return false;
    for (const QScreen* screen : QGuiApplication::screens()) {
        const QRectF frame = screen->availableGeometry().toRectF();
        if (point.x >= frame.left() && point.x < frame.right() && point.y >= frame.top() && point.y < frame.bottom()) {
            return true;
        }
    }
    return false;
}

int64_t WindowPanel::runModal() {
    return window_ ? ModalRun(*window_->window()).run() : kModalRunAborted;
}

void WindowPanel::abortModal() {
    endModalRun(window_, kModalRunAborted);
}

void WindowPanel::orderOut() {
    if (window_) window_->window()->hide();
}

}  // namespace vornaset
