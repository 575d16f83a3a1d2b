#pragma once
// What stands behind the handles on XML nodes: the parser library's tree and who owns it. For the xml_* units alone.

#include <libxml/tree.h>

#include <memory>
#include <string>
#include <vector>

#include "support/xml_element.h"

namespace vornaset {

/// The parser library's mark for a document that begins without a declaration.
inline constexpr int kNoXmlDeclaration = -1;

/// Owns a document and what was taken out of it while handles on it may live. A tree whose root was added to another
/// tree is empty and keeps that other one alive for its old handles.
class XmlTree {
  public:
    explicit XmlTree(xmlDoc* document) : document_(document) {}
    XmlTree(const XmlTree&) = delete;
    XmlTree& operator=(const XmlTree&) = delete;
    ~XmlTree();

    xmlDoc* document() const { return document_; }
    /// Takes a child out of its parent. It lives on as long as somebody may hold a handle on it.
    void remove(xmlNode* node);
    /// From here somebody may hold a handle on a node that is no element.
    void handOutLeaves() { handsOutLeaves_ = true; }
    /// The root has gone to another tree, where it stands already.
    void moveInto(const std::shared_ptr<XmlTree>& owner, xmlNode* root);
    const std::shared_ptr<XmlTree>& owner() const { return owner_; }

  private:
    xmlDoc* document_;
    std::vector<xmlNode*> removed_;
    std::shared_ptr<XmlTree> owner_;  ///< where the nodes have gone
    bool handsOutLeaves_ = false;
};

/// The tree in which the nodes of a tree are now.
std::shared_ptr<XmlTree> currentTree(std::shared_ptr<XmlTree> tree);

/// How the other units see through a handle and make new ones.
struct XmlAccess {
    static xmlNode* node(const XmlNode& handle) { return static_cast<xmlNode*>(handle.node_); }
    static const std::shared_ptr<XmlTree>& tree(const XmlNode& handle) { return handle.tree_; }
    /// Null for a null node.
    static XmlNode handle(const std::shared_ptr<XmlTree>& tree, void* node);
    static Element element(const std::shared_ptr<XmlTree>& tree, xmlNode* node) { return {tree, node}; }
};

/// A new tree with one element in it. The name isn't looked at.
Element makeElement(const String& name);

inline const xmlChar* xmlBytes(const std::string& text) {
    return reinterpret_cast<const xmlChar*>(text.c_str());
}
/// Null for null; damaged UTF-8, which a tree doesn't hold, as U+FFFD.
String stringOfXml(const xmlChar* text);
/// UTF-8 that an XML text can hold.
std::string xmlTextBytes(const String& text);
bool isXmlName(const String& name);
/// With the prefix and a colon where there is one.
std::string qualifiedName(const xmlNode* node);

}  // namespace vornaset
