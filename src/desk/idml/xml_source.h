#pragma once
// A part as its bytes, with the place of every element, so that a change touches only the bytes that it is about.
//
// Offsets are bytes from the start of the part. The part must have been read by XmlDocument before: what isn't
// well-formed is refused there, with a better message.

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace desk {

struct SourceElement;

struct SourceAttribute {
    std::string_view name;
    size_t begin = 0, end = 0;  ///< of the value, without its quotes
};

struct SourcePiece {
    enum class Kind { Element, Text, CData, Instruction, Comment };
    Kind kind = Kind::Text;
    size_t begin = 0, end = 0;  ///< with all its marks
    std::unique_ptr<SourceElement> element;
};

struct SourceElement {
    std::string_view name;      ///< as written, with its prefix
    size_t begin = 0, end = 0;  ///< from "<" to behind the last ">"
    size_t tagEnd = 0;          ///< behind the start tag
    size_t contentEnd = 0;      ///< where the end tag begins; tagEnd for an element that is one tag
    bool isOneTag = false;      ///< "<a/>"
    std::vector<SourceAttribute> attributes;
    std::vector<SourcePiece> content;
    const SourceElement* parent = nullptr;  ///< null for the root

    /// The first child element of that name; null when there is none.
    const SourceElement* child(std::string_view childName) const;
    /// Null when absent.
    const SourceAttribute* attribute(std::string_view attributeName) const;

    template <class Function>
    void eachChild(Function function) const {
        for (const SourcePiece& piece : content)
            if (piece.element) function(*piece.element);
    }
};

class XmlSource {
  public:
    /// Throws InputError, with file and member, for bytes that aren't UTF-8 as their declaration tells.
    XmlSource(std::string bytes, const std::string& file, const std::string& member);

    XmlSource(const XmlSource&) = delete;
    XmlSource& operator=(const XmlSource&) = delete;

    const std::string& bytes() const { return bytes_; }
    const SourceElement& root() const { return *root_; }
    std::string_view text(size_t begin, size_t end) const {
        return std::string_view(bytes_).substr(begin, end - begin);
    }
    /// The attribute's meaning as XML reads it, line ends and tabs as spaces; empty when absent.
    std::string attributeText(const SourceElement& element, std::string_view name) const;

  private:
    void scan();
    void scanTag(size_t at, SourceElement& element) const;
    [[noreturn]] void fail(const std::string& what) const;

    std::string bytes_;
    std::string where_;
    std::unique_ptr<SourceElement> root_;
};

/// What stands at the start of written text: one character with its bytes.
struct WrittenCharacter {
    char32_t code = 0;
    size_t length = 0;  ///< bytes
};
/// `entities` is false inside CDATA. The text must not be empty.
WrittenCharacter firstCharacter(std::string_view written, bool entities);

/// Text as content and as the value of an attribute in double quotes. What XML can't hold becomes U+FFFD: control
/// characters, U+FFFE, U+FFFF and bytes that aren't UTF-8.
std::string escapedText(std::string_view utf8);
std::string escapedAttribute(std::string_view utf8);

}  // namespace desk
