#include "desk/output/page_tree.h"

namespace desk {
namespace {

constexpr size_t kidsInANode = 32;

}  // namespace

ObjectNumber PageTree::add(ObjectNumber page) {
    ensureRoom(0);
    Node& node = open_[0];
    node.kids.push_back(page);
    ++node.pages;
    ++pageCount_;
    return node.number;
}

/// Makes sure that the level has a node that takes another kid. A full node is closed only now, when another kid shows
/// that it isn't the root.
void PageTree::ensureRoom(size_t level) {
    if (level == open_.size()) {
        open_.emplace_back().number = file_.allocate();
    } else if (open_[level].kids.size() == kidsInANode) {
        close(level);
        open_[level] = Node();
        open_[level].number = file_.allocate();
    }
}

/// Hands the level's node to the level above and writes it.
void PageTree::close(size_t level) {
    ensureRoom(level + 1);
    Node& parent = open_[level + 1];
    const Node& node = open_[level];
    parent.kids.push_back(node.number);
    parent.pages += node.pages;
    writeNode(node, parent.number);
}

void PageTree::writeNode(const Node& node, ObjectNumber parent) {
    ContentBuffer object;
    object.append("<</Type/Pages/Count ").integer(static_cast<int64_t>(node.pages));
    if (parent != 0) object.append("/Parent ").integer(parent).append(" 0 R");
    object.append("/Kids[");
    for (ObjectNumber kid : node.kids) object.integer(kid).append(" 0 R ");
    object.append("]>>");
    file_.writeObject(node.number, object.view());
}

ObjectNumber PageTree::finish() {
    if (open_.empty()) open_.emplace_back().number = file_.allocate();
    for (size_t level = 0; level + 1 < open_.size(); ++level) close(level);
    writeNode(open_.back(), 0);
    return open_.back().number;
}

}  // namespace desk
