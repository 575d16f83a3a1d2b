#pragma once
// Plain geometry of the library, and its form as values.

#include <cstdint>

#include "support/format.h"
#include "support/values.h"

namespace vornaset {

/// Origin and size, in points unless its user says otherwise.
struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    bool operator==(const Rect&) const = default;
};

/// A place and a count.
struct Range {
    int64_t location = 0;
    int64_t length = 0;
    bool operator==(const Range&) const = default;
};

Value valueWithRect(const Rect& rectangle);
/// The empty rectangle for a value without one.
Rect rectWithValue(const Value& value);

/// The format with x, y, width and height as its arguments.
String stringWithFormat(const String& format, const Rect& rectangle);

}  // namespace vornaset
