#include "widgets/keyboard.h"

#include <QtGui/QWindow>

#include "widgets/window_fixture.h"

namespace vornaset {
namespace {

struct Keys {
    bool shift;
    bool option;
    bool command;
    bool operator==(const Keys&) const = default;
};

Keys pressed() {
    return {isShiftKeyPressed(), isOptionKeyPressed(), isCmdKeyPressed()};
}

TEST(Keyboard, EachModifierIsToldByItself) {
    QWindow window;
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    EXPECT_EQ(pressed(), (Keys{false, false, false}));
    const std::pair<Qt::KeyboardModifier, Keys> cases[] = {{Qt::ShiftModifier, {true, false, false}},
                                                           {Qt::AltModifier, {false, true, false}},
                                                           {Qt::ControlModifier, {false, false, true}}};
    for (const auto& [modifier, keys] : cases) {
        QTest::keyPress(&window, Qt::Key_X, modifier);
        EXPECT_EQ(pressed(), keys) << modifier;
        QTest::keyRelease(&window, Qt::Key_X, Qt::NoModifier);
        EXPECT_EQ(pressed(), (Keys{false, false, false}));
    }
}

TEST(Keyboard, SeveralModifiersAreToldTogether) {
    QWindow window;
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    QTest::keyPress(&window, Qt::Key_X, Qt::ShiftModifier | Qt::ControlModifier);
    EXPECT_EQ(pressed(), (Keys{true, false, true}));
    QTest::keyRelease(&window, Qt::Key_X, Qt::NoModifier);
}

}  // namespace
}  // namespace vornaset
