#pragma once
// The lexical conventions of the format: numbers, points, matrices, lists, references and names as attributes and
// properties write them.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "desk/idml/xml.h"
#include "desk/model/geometry.h"

namespace desk {

/// Absent for what isn't a finite number of sane size (limits::number).
std::optional<double> toNumber(std::string_view text);

/// The number cut to an integer.
std::optional<int> toInteger(std::string_view text);

std::optional<bool> toBoolean(std::string_view text);

/// Numbers separated by blanks; absent when one of them isn't a number.
std::optional<std::vector<double>> toNumbers(std::string_view text);

/// "x y".
std::optional<Point> toPoint(std::string_view text);

/// "a b c d e f".
std::optional<Matrix> toMatrix(std::string_view text);

/// References separated by blanks; a blank inside one is written "%20".
std::vector<std::string> toReferences(std::string_view text);

/// A reference; empty for "n", which says that there is none.
std::string toReference(std::string_view text);

/// The text without the mark of built-in names, "$ID/".
std::string withoutKeyMark(std::string_view text);

/// What isn't valid UTF-8 becomes U+FFFD.
std::u16string toUtf16(std::string_view utf8);

/// A surrogate that stands alone becomes U+FFFD.
std::string toUtf8(std::u16string_view text);

/// The shortest decimal that reads as the same number; never with an exponent.
std::string numberText(double value);

/// "x y".
std::string pointText(Point point);

/// "a b c d e f".
std::string matrixText(const Matrix& matrix);

/// The attribute read by one of the functions above; absent when the attribute is absent or can't be read.
template <class Parse>
auto attributeAs(const XmlElement& element, std::string_view name, Parse parse) -> decltype(parse(std::string_view())) {
    const std::string* value = element.attribute(name);
    return value ? parse(*value) : decltype(parse(std::string_view())){};
}

/// The attribute's text; empty when absent.
const std::string& attributeText(const XmlElement& element, std::string_view name);

/// The value of a scalar, an attribute or an element of that name inside Properties; null when there is neither.
/// `storage` holds the text of an element.
const std::string* scalar(const XmlElement& element, std::string_view name, std::string& storage);

}  // namespace desk
