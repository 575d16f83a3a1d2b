#pragma once
// Views: what kinds there are, what lies in which, and finding one. A view is a widget; a null view has no subviews.
// All of it belongs to the thread of the window system.

#include <cstdint>
#include <vector>

#include "support/values.h"

class QWidget;

namespace vornaset {

/// What a view is, for everything that treats kinds differently. The order is the order of the tests: a view is of the
/// first kind that fits.
enum class ViewKind : uint8_t {
    textField,   ///< a label or a line that is edited
    popUp,       ///< a combo box
    button,      ///< any other button, check boxes and radio buttons included
    tabView,     ///< pages, of which one is seen
    tableView,   ///< a table or a tree, with columns
    box,         ///< a frame with a title
    scrollView,  ///< its content view is the part that scrolls
    textView,    ///< a text of many lines
    other
};
ViewKind kindOf(const QWidget& view);

/// True for what the user operates and for labels: text fields, pop-ups, buttons, tables, lists, sliders, spin boxes.
/// Scroll bars are part of what they scroll, and progress bars are operated by nobody.
bool isControl(const QWidget& view);

/// The views that lie directly in a view, in the order in which they were put there. A tab view has its pages, all of
/// them; a view that scrolls has the part that scrolls; parts that belong to a control's own making, and windows, are
/// no subviews.
std::vector<QWidget*> subviewsOf(const QWidget* view);

/// The tag is the dynamic property "tag", a number. Without it a control has 0 and another view -1.
int64_t tagOf(const QWidget& view);
/// The identifier is the dynamic property "identifier", or else the object's name. Empty when there is neither.
String identifierOf(const QWidget& view);

/// The view itself or the nearest below it with that tag: level by level, in the order of the subviews. Null if there
/// is none.
QWidget* viewWithTag(QWidget* view, int64_t tag);
/// Depth first: each subview is tested, then what is below it, before the next one. The view itself isn't tested. Null
/// if there is none, and for an identifier that is null or empty.
QWidget* viewWithIdentifier(const QWidget* view, const String& identifier);

/// Gets a control; 0 ends the walk of the subviews among which the control is.
using ControlCallback = uint8_t (*)(QWidget* control, void* context);
/// Calls back for each control among the subviews; what isn't a control is walked itself, what is one isn't. A 0 from
/// the callback ends the walk on its own level alone: the level above goes on with its next subview.
void EnumControls(const QWidget* view, ControlCallback callback, void* context);

}  // namespace vornaset
