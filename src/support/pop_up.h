#pragma once
// Filling pop-up buttons and reading paths out of them. A null pop-up has no items and takes none.

#include <cstdint>

#include "support/controls.h"

namespace vornaset {

/// Removes all items, cuts the path at each "/" and adds one item for each piece from the last to the second, so that
/// the deepest folder is the first item and the piece before a leading "/" never shows. Selects the first item.
void setupPopupWithPath(PopUpButton* popUp, const String& path);
/// From the last item up to and including the selected one, "/" and the title each. Empty when no item is selected.
String pathWithPopup(const PopUpButton* popUp);
/// "/", and behind it, from the last item up to and including the one at the index (-1: the selected one), each item as
/// a path component whose tag is 0 and whose title isn't empty. "/" alone for an index that no item has.
String pathFromPopup(const PopUpButton* popUp, int64_t index);
/// Removes all items if `clear` is exactly 1. Adds an item for each entry of the folder, hidden ones and folders
/// included, whose extension equals `extension` with case: its name without the extension, in the order of
/// localizedStandardCompare. Selects the first item. A folder that can't be read has no entries; a null extension fits
/// none, an empty one the entries without extension.
void setupPopupWithDirectory(PopUpButton* popUp, const String& folder, const String& extension, uint8_t clear);
/// Removes all items. With titles to add: adds them, then selectPopup. A null array has none.
void setupPopupWithArray(PopUpButton* popUp, const Array& titles, const String& selected);
/// Selects the first item of that title; the first item when the title is null or isn't among them.
void selectPopup(PopUpButton* popUp, const String& title);

}  // namespace vornaset
