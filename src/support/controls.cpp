#include "support/controls.h"

namespace vornaset {

TextField::~TextField() = default;
PopUpButton::~PopUpButton() = default;
ProgressIndicator::~ProgressIndicator() = default;
ModalPanel::~ModalPanel() = default;

int64_t PopUpButton::indexOfTitle(const String& title) const {
    if (title.isNull()) return -1;
    const int64_t count = itemCount();
    for (int64_t index = 0; index < count; ++index) {
        if (titleAt(index) == title) return index;
    }
    return -1;
}

}  // namespace vornaset
