#pragma once
// Whole XML documents. A document that doesn't parse gives null and an error in the log.
//
// Refused, so that foreign XML costs no more than it looks: a document type declaration (it can define entities that
// expand without bound or name files), more than 256 levels of elements, and what limits.h says. Nothing outside the
// text is ever read.

#include <cstdint>

#include "support/error.h"
#include "support/xml_element.h"

namespace vornaset {

/// Options of reading, with the platform's numbers; to be added up. Other bits have no effect. By default white space
/// between elements is dropped and a CDATA section becomes plain text.
inline constexpr uint64_t kPreserveCDataXml = uint64_t{1} << 24;
inline constexpr uint64_t kPreserveWhitespaceXml = uint64_t{1} << 25;

class XmlDocument : public XmlNode {
  public:
    XmlDocument() noexcept = default;  ///< null
    XmlDocument(std::nullptr_t) noexcept {}

    /// The document whose root this element is. Throws InvalidArgumentException for an element with a parent; null for
    /// a null one.
    static XmlDocument make(const Element& root);
    /// These give null and the reason in `error`; without failure `error` stays as it is. The bytes may be in any
    /// encoding that a byte-order mark or the declaration names.
    static XmlDocument withString(const String& text, uint64_t options, Error& error);
    static XmlDocument withData(const Data& data, uint64_t options, Error& error);

    /// Null when the root has gone to another tree.
    Element rootElement() const;

  private:
    XmlDocument(std::shared_ptr<XmlTree> tree, void* node) noexcept : XmlNode(std::move(tree), node) {}
};

/// The text's own encoding declaration counts for nothing: it is text already.
XmlDocument xmlDocWithString(const String& text, uint64_t options);
XmlDocument xmlDocWithPath(const String& path, uint64_t options);
/// The path comes from pathForResource.
XmlDocument xmlDocWithResource(const String& name, const String& type, uint64_t options);

}  // namespace vornaset
