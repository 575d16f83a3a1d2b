#include "widgets/keyboard.h"

#include <QtGui/QGuiApplication>

namespace vornaset {

bool isShiftKeyPressed() {
    return QGuiApplication::queryKeyboardModifiers().testFlag(Qt::ShiftModifier);
}

bool isOptionKeyPressed() {
    return QGuiApplication::queryKeyboardModifiers().testFlag(Qt::AltModifier);
}

bool isCmdKeyPressed() {
    return QGuiApplication::queryKeyboardModifiers().testFlag(Qt::ControlModifier);
}

}  // namespace vornaset
