#include "widgets/alert_window.h"

#include <QtCore/QThread>
#include <QtGui/QPixmap>
#include <QtGui/QScreen>
#include <QtWidgets/QApplication>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QVBoxLayout>
#include <algorithm>

#include "support/raise_exception.h"
#include "support/string_tables.h"
#include "widgets/qt_text.h"

namespace vornaset {

namespace {

// In device-independent pixels.
constexpr int kIconSide = 64;
constexpr int kTextWidth = 360;
constexpr int kMargin = 20;
constexpr int kParagraphSpace = 10;
constexpr const char* kOwnIdentifier = "com.kelmoriandev.indesign.Vornaset";

/// The button that changes least.
AlertAnswer answerOfClosing(const Alert& alert) {
    if (!alert.otherButton.isNull()) return AlertAnswer::otherButton;
    if (!alert.alternateButton.isNull()) return AlertAnswer::alternateButton;
    return AlertAnswer::defaultButton;
}

QLabel* makeIcon(const Data& png, const QWidget& window) {
    QPixmap icon;
    if (png.isNull() || !icon.loadFromData(png.bytes(), static_cast<uint>(png.length()))) return nullptr;
    const qreal ratio = window.devicePixelRatioF();
    const int side = qRound(kIconSide * ratio);
    icon = icon.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    icon.setDevicePixelRatio(ratio);
    auto label = std::make_unique<QLabel>();
    label->setObjectName("icon");
    label->setPixmap(icon);
    return label.release();
}

QLabel* makeLabel(const String& text, const char* name) {
    auto label = std::make_unique<QLabel>();
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setText(qtText(text));
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    return label.release();
}

}  // namespace

AlertWindow::AlertWindow(const Alert& alert, QWidget* parent) : QDialog(parent), answer_(answerOfClosing(alert)) {
    setObjectName("alert");
    setWindowTitle(qtText(alert.windowTitle));
    setAttribute(Qt::WA_QuitOnClose, false);
    auto* upper = new QHBoxLayout;
    upper->setSpacing(kMargin);
    if (QLabel* icon = makeIcon(alert.icon, *this)) upper->addWidget(icon, 0, Qt::AlignTop);
    upper->addWidget(makeTexts(alert), 1);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    all->setSpacing(kMargin);
    all->addLayout(upper, 1);
    all->addWidget(makeButtons(alert));
    resize(all->totalMinimumSize());  // what a scrolling part asks for beyond its minimum is air
}

QWidget* AlertWindow::makeTexts(const Alert& alert) {
    auto* texts = new QWidget;
    auto* column = new QVBoxLayout(texts);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(kParagraphSpace);
    if (!alert.message.isEmpty()) {
        QLabel* message = makeLabel(alert.message, "message");
        QFont font = message->font();
        font.setBold(true);
        message->setFont(font);
        column->addWidget(message);
    }
    if (!alert.informative.isEmpty()) column->addWidget(makeLabel(alert.informative, "informative"));
    column->addStretch(1);
    auto* scrolling = new QScrollArea(this);
    scrolling->setFrameShape(QFrame::NoFrame);
    scrolling->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scrolling->setWidgetResizable(true);
    scrolling->setFocusPolicy(Qt::NoFocus);
    scrolling->setWidget(texts);
    scrolling->setMinimumWidth(kTextWidth);
    const int height = std::max(texts->heightForWidth(kTextWidth), 0);
    scrolling->setMinimumHeight(std::min(height, screen()->availableGeometry().height() / 2));
    return scrolling;
}

QWidget* AlertWindow::makeButtons(const Alert& alert) {
    auto* row = new QWidget(this);
    auto* line = new QHBoxLayout(row);
    line->setContentsMargins(0, 0, 0, 0);
    line->addStretch(1);
    const auto add = [&](const String& title, const char* name, AlertAnswer answer) {
        auto* button = new QPushButton(qtTitle(title), row);
        button->setObjectName(name);
        button->setAutoDefault(true);
        connect(button, &QPushButton::clicked, this, [this, answer] {
            answer_ = answer;
            accept();
        });
        line->addWidget(button);
        return button;
    };
    const String defaultTitle = alert.defaultButton.isNull() ? stringForKey("ok", "OK") : alert.defaultButton;
    QPushButton* defaultButton = add(defaultTitle, "default", AlertAnswer::defaultButton);
    defaultButton->setDefault(true);
    defaultButton->setFocus();
    if (!alert.alternateButton.isNull()) add(alert.alternateButton, "alternate", AlertAnswer::alternateButton);
    if (!alert.otherButton.isNull()) add(alert.otherButton, "other", AlertAnswer::otherButton);
    return row;
}

void WindowPresenter::activateApplication(const String& identifier) {
    if (identifier != String(kOwnIdentifier) && identifier != textWithQt(QGuiApplication::desktopFileName())) return;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (!window->isVisible() || window->windowType() != Qt::Window) continue;
        window->raise();
        window->activateWindow();
    }
}

void WindowPresenter::beep() {
    QApplication::beep();
}

AlertAnswer WindowPresenter::run(const Alert& alert) {
    const auto* application = qobject_cast<QApplication*>(QCoreApplication::instance());
    if (application == nullptr) raiseException("an alert needs a window system, and none was set up");
    if (application->thread() != QThread::currentThread()) {
        raiseException("an alert was asked for on a thread other than that of the window system");
    }
    AlertWindow window(alert, QApplication::activeWindow());
    window.exec();
    return window.answer();
}

}  // namespace vornaset
