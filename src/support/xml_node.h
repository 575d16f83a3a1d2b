#pragma once
// A handle on one node of an XML tree, of whatever kind.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "support/values.h"

namespace vornaset {

class XmlTree;

/// The kinds of nodes, with the platform's numbers. A CDATA section is a text.
enum class XmlKind : uint8_t {
    none = 0,
    document = 1,
    element = 2,
    attribute = 3,
    processingInstruction = 5,
    comment = 6,
    text = 7
};

/// A handle on one node. Copies share it, and any handle keeps the whole tree alive. A null node answers null, 0 or
/// empty. Not for several threads.
class XmlNode {
  public:
    XmlNode() noexcept = default;  ///< null
    XmlNode(std::nullptr_t) noexcept {}

    bool isNull() const noexcept { return node_ == nullptr; }
    explicit operator bool() const noexcept { return node_ != nullptr; }

    /// `none` for null.
    XmlKind kind() const noexcept;
    /// True for a text that is written as a CDATA section.
    bool isCData() const noexcept;
    /// With its prefix; null for documents, texts and comments.
    String name() const;
    /// The text of the node and of all below it; the value of an attribute.
    String stringValue() const;

    /// Children of every kind but attributes, in document order. A text and an attribute have none.
    size_t childCount() const noexcept;
    std::vector<XmlNode> children() const;
    /// Null for a document, and for what was taken out of its tree.
    XmlNode parent() const;

    /// The node's text as it is: no added white space, an empty element as two tags. A document begins with a
    /// declaration if it was read with one.
    String xmlText() const;

    /// The same node, not an equal one.
    bool isSameObject(const XmlNode& other) const noexcept { return node_ == other.node_; }

  protected:
    XmlNode(std::shared_ptr<XmlTree> tree, void* node) noexcept : tree_(std::move(tree)), node_(node) {}
    enum class Layout { asItIs, pretty };
    std::string serialised(Layout layout) const;

    std::shared_ptr<XmlTree> tree_;
    void* node_ = nullptr;  ///< owned by the tree

  private:
    friend struct XmlAccess;
    friend String xmlString(const XmlNode& node);
};

/// The text of an element or a document, pretty-printed, with empty elements in the compact form. Text that stands
/// beside elements keeps its line as it is. A document begins with a declaration that says UTF-8 if it was read with
/// one. Null for null.
String xmlString(const XmlNode& node);

}  // namespace vornaset
