#pragma once
// How a failed expectation shows the plain values.

#include <gtest/gtest.h>

#include <ostream>

#include "support/values.h"

namespace vornaset {

inline void PrintTo(const String& text, std::ostream* out) {
    *out << (text.isNull() ? "(null)" : "\"" + text.utf8() + "\"");
}
inline void PrintTo(const Value& value, std::ostream* out) {
    *out << value.description().utf8();
}
inline void PrintTo(const Array& value, std::ostream* out) {
    PrintTo(Value(value), out);
}
inline void PrintTo(const Dictionary& value, std::ostream* out) {
    PrintTo(Value(value), out);
}
inline void PrintTo(const Number& value, std::ostream* out) {
    *out << value.text().utf8();
}

}  // namespace vornaset

/// Expects the exception and its exact reason.
#define EXPECT_RAISES(statement, Kind, expectedReason)            \
    try {                                                         \
        statement;                                                \
        ADD_FAILURE() << #statement " raised nothing";            \
    } catch (const Kind& failure) {                               \
        EXPECT_EQ(failure.reason(), std::string(expectedReason)); \
    }
