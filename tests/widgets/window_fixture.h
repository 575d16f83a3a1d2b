#pragma once
// Driving windows: finding the one that waits, pressing its buttons, keeping a picture of it for a person to look at.

#include <gtest/gtest.h>

#include <QtCore/QTimer>
#include <QtTest/QTest>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>
#include <filesystem>
#include <functional>
#include <string>

#include "support/message_fixture.h"
#include "support/printing.h"

namespace vornaset {

/// Writes what the window looks like to "screenshots/<name>.png" in the build folder.
inline void keepScreenshot(QWidget& window, const std::string& name) {
    const std::string folder = VORNASET_BUILD_DIR "/screenshots";
    std::filesystem::create_directories(folder);
    EXPECT_TRUE(window.grab().save(QString::fromStdString(folder + "/" + name + ".png"))) << name;
}

/// Calls `act` with the modal window as soon as one waits for an answer. Asks the window to close when `act` never came
/// to a window within some seconds, so that a failed test ends.
class ModalAnswer {
  public:
    explicit ModalAnswer(std::function<void(QWidget&)> act) : act_(std::move(act)) {
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { look(); });
        timer_.start(5);
    }
    ~ModalAnswer() { EXPECT_TRUE(hasActed_) << "no modal window came up"; }
    ModalAnswer(const ModalAnswer&) = delete;
    ModalAnswer& operator=(const ModalAnswer&) = delete;

  private:
    void look() {
        QWidget* window = QApplication::activeModalWidget();
        if (window == nullptr || !window->isVisible()) return;
        if (!hasActed_) {
            hasActed_ = true;
            act_(*window);
        } else if (++waited_ > 1000) {
            ADD_FAILURE() << "the window doesn't close";
            window->close();
        }
    }

    std::function<void(QWidget&)> act_;
    QTimer timer_;
    bool hasActed_ = false;
    int waited_ = 0;
};

inline void press(QWidget& window, const char* button) {
    auto* found = window.findChild<QAbstractButton*>(button);
    ASSERT_NE(found, nullptr) << button;
    QTest::mouseClick(found, Qt::LeftButton);
}

/// A string table and a bundle of the test's own.
class WindowTest : public MessageFixture {
  protected:
    void useShippedBundle() {
        gBundle = Bundle::withPath(VORNASET_SOURCE_DIR "/resources/com.kelmoriandev.vornaset");
        ASSERT_FALSE(gBundle.isNull());
    }
};

}  // namespace vornaset
