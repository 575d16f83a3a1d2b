#pragma once
// Text whose stretches carry named attributes.

#include <cstdint>
#include <memory>
#include <vector>

#include "support/values.h"

namespace vornaset {

/// Text as a row of runs. Neighbours with equal attributes are one run, and no run is empty.
class AttributedString : public Object {
  public:
    struct Run {
        String text;
        Dictionary attributes;  ///< never null
    };

    AttributedString() = default;
    explicit AttributedString(const String& text, const Dictionary& attributes = nullptr);

    /// A null or empty text adds nothing; null attributes are no attributes.
    void append(const String& text, const Dictionary& attributes = nullptr);

    String string() const;
    /// In UTF-16 units.
    size_t length() const;
    const std::vector<Run>& runs() const { return runs_; }

    /// The plain text.
    String description() const override { return string(); }

  private:
    std::vector<Run> runs_;
};

/// Gets a run's text, the value of its attribute "style" (null when it has none) and the context. 0 stops the walk.
using AttributedRunCallback = uint8_t (*)(const String& text, const Value& style, void* context);

/// Walks the runs of an attributed string from its start. 0 when the callback stopped the walk, else 1, also with no
/// run, for null and for a value that is no attributed string.
uint8_t EnumAttributedString(const Value& text, AttributedRunCallback callback, void* context);

}  // namespace vornaset
