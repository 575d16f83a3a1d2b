#pragma once
// What names of families and styles mean. Inner header of this folder.

#include <string>
#include <string_view>
#include <vector>

namespace desk {

/// A name reduced to what counts in a comparison: without case, blanks, hyphens and underscores, and without the "$ID/"
/// that old documents put before names. UTF-8.
std::string nameKey(std::string_view name);

/// The words of a name as they stand, divided at blanks, hyphens and underscores.
std::vector<std::string> nameWords(std::string_view name);

std::string joinWords(const std::vector<std::string>& words, size_t first, size_t last);

/// What a style name says.
struct StyleTraits {
    int weight = 400;     ///< 100..950, as in OS/2
    int width = 100;      ///< percent of normal
    bool italic = false;  ///< or oblique: layout documents use the two words for one thing
    std::string rest;     ///< words that say none of these ("caption"), as a key
    bool operator==(const StyleTraits&) const = default;
};

/// Knows the usual synonyms (Roman, Book, Normal, Plain: Regular), words written together ("BoldItalic") and the
/// two-digit numbers of some foundries ("45 Light": first digit the weight, second digit width and slant).
StyleTraits parseStyle(std::string_view style);

/// How unlike two styles are; 0 for equal traits. Slant counts more than width, width more than weight.
int styleDistance(const StyleTraits& wanted, const StyleTraits& offered);

enum class FontClass { Sans, Serif, Monospaced };

/// A guess from the words of a family's name; Sans when nothing tells.
FontClass guessClass(std::string_view family);

/// Families that may stand in for a missing one, best first: of the same widths, or of the same look, then those of its
/// class. A family in the list may be missing as well.
std::vector<std::string> standInFamilies(std::string_view family);

}  // namespace desk
