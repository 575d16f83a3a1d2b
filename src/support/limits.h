#pragma once
// How much of foreign XML and JSON is accepted. One place, so that a reader of the code sees what an input can cost.

#include <cstddef>

namespace vornaset {

/// Bytes of an XML text, as UTF-8. What is read here are records, settings and tables of texts, and a tree takes up to
/// forty times the bytes that it is read from. The parser has limits of its own beside: 256 levels of elements, ten
/// million bytes in one text, one tag or one name space of names.
inline constexpr std::size_t kLargestXmlText = std::size_t{16} << 20;

/// Attributes of one element. The parser compares each with all before it: fifty thousand take twenty seconds.
inline constexpr std::size_t kMostXmlAttributes = 512;

/// Levels of elements that the plain output of a tree goes down. A tree that was read has far fewer; one that was built
/// may hold any number, and each level costs stack.
inline constexpr std::size_t kDeepestXmlOutput = 1000;

/// Steps of one search. A search over the largest tree takes some ten million; an expression may ask for the square.
inline constexpr unsigned long kMostXPathSteps = 50'000'000;

/// Levels of arrays and dictionaries in JSON, read or written. Deeper nesting has no use here, and each level costs
/// stack when a container is described, compared or let go.
inline constexpr std::size_t kDeepestJson = 512;

}  // namespace vornaset
