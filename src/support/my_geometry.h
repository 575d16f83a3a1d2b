#pragma once
// The library's own records of a point and a rectangle in single precision, in points unless their user says otherwise.

namespace vornaset {

struct MyPoint {
    float x = 0;
    float y = 0;
    bool operator==(const MyPoint&) const = default;
};

struct MyRect {
    float x = 0;
    float y = 0;
    float width = 0;
    float height = 0;
    bool operator==(const MyRect&) const = default;
};

}  // namespace vornaset
