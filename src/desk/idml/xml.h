#pragma once
// XML from outside as a tree of elements, text and processing instructions. Document type declarations are refused
// altogether, so that there are no entities but the five of XML itself; nothing is fetched from anywhere.

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace desk {

/// Names are as written, with their prefix: "idPkg:Story".
struct XmlAttribute {
    std::string_view name;
    std::string value;
};

struct XmlElement;

/// One piece of an element's content: exactly one of element, processing instruction (with a target) and text.
struct XmlNode {
    std::unique_ptr<XmlElement> element;
    std::string_view instruction;  ///< target of a processing instruction, whose data is in text
    std::string text;              ///< UTF-8; CDATA is text as any other
};

struct XmlElement {
    std::string_view name;
    int line = 0;  ///< from 1
    std::vector<XmlAttribute> attributes;
    std::vector<XmlNode> content;

    /// Null when absent.
    const std::string* attribute(std::string_view attributeName) const;
    /// The first child element of that name; null when there is none.
    const XmlElement* child(std::string_view childName) const;
    /// The text directly inside, in one piece.
    std::string text() const;

    /// Calls a function with every child element, in order.
    template <class Function>
    void eachChild(Function function) const {
        for (const XmlNode& node : content)
            if (node.element) function(*node.element);
    }
};

class XmlDocument {
  public:
    /// `file` and `member` are used in messages. Throws InputError, with member and line, for what isn't well-formed
    /// XML, for a document type declaration, and for what goes beyond the limits.
    static XmlDocument parse(std::string_view bytes, const std::string& file, const std::string& member);

    const XmlElement& root() const { return *root_; }

  private:
    friend class XmlBuilder;
    std::unique_ptr<std::set<std::string, std::less<>>> names_;  ///< every name once; elements refer to them
    std::unique_ptr<XmlElement> root_;
};

}  // namespace desk
