#include "pdf/lost_trailer.h"

#include <cctype>
#include <optional>

namespace vornaset {
namespace {

bool isSpace(char c) {
    return c == ' ' || c == '\n' || c == '\r' || c == '\t' || c == '\f' || c == '\0';
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// The bytes before `end` without white space at their end.
std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
    return text;
}

/// Takes a run of digits from the end of the text.
std::string_view takeNumber(std::string_view& text) {
    size_t start = text.size();
    while (start > 0 && isDigit(text[start - 1])) --start;
    const std::string_view number = text.substr(start);
    text.remove_suffix(number.size());
    return number;
}

/// "12 0 R" for the object whose "12 0 obj" stands right in front of this place.
std::optional<std::string> referenceBefore(std::string_view file, size_t place) {
    const size_t keyword = file.rfind("obj", place);
    if (keyword == std::string_view::npos || (keyword >= 3 && file.substr(keyword - 3, 3) == "end"))
        return std::nullopt;
    std::string_view before = trimmed(file.substr(0, keyword));
    const std::string_view generation = takeNumber(before);
    before = trimmed(before);
    const std::string_view number = takeNumber(before);
    constexpr size_t mostDigits = 10;
    if (generation.empty() || generation.size() > 5 || number.empty() || number.size() > mostDigits)
        return std::nullopt;
    return std::string(number) + " " + std::string(generation) + " R";
}

}  // namespace

std::string trailerForLost(std::string_view file) {
    for (size_t place = file.rfind("/Catalog"); place != std::string_view::npos && place > 0;
         place = file.rfind("/Catalog", place - 1)) {
        std::string_view before = trimmed(file.substr(0, place));
        if (!before.ends_with("/Type")) continue;
        if (const auto reference = referenceBefore(file, place))
            return "\ntrailer\n<</Root " + *reference + ">>\nstartxref\n0\n%%EOF\n";
    }
    return {};
}

}  // namespace vornaset
