#pragma once
// The user's own clipboard as the library's general pasteboard.

#include "support/clipboard.h"

namespace vornaset {

/// Needs a WindowSystem.
class UserClipboard : public Clipboard {
  public:
    String string() const override;
    /// A null text leaves the clipboard empty.
    void setString(const String& text) override;
};

}  // namespace vornaset
