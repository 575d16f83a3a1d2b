#pragma once
// The page tree, written as it grows: a node leaves for the file when it is full.

#include <vector>

#include "desk/output/pdf_file.h"

namespace desk {

/// Balanced, 32 kids a node; memory grows with the logarithm of the number of pages.
class PageTree {
  public:
    explicit PageTree(PdfFile& file) : file_(file) {}

    /// Takes in the next page, gives the number of the node that is its /Parent.
    ObjectNumber add(ObjectNumber page);
    uint64_t pageCount() const { return pageCount_; }
    /// Writes the open nodes, gives the root.
    ObjectNumber finish();

  private:
    struct Node {
        ObjectNumber number = 0;
        uint64_t pages = 0;
        std::vector<ObjectNumber> kids;
    };
    void close(size_t level);
    void writeNode(const Node& node, ObjectNumber parent);
    void ensureRoom(size_t level);

    PdfFile& file_;
    std::vector<Node> open_;  ///< the node being filled on each level, leaves' parents first
    uint64_t pageCount_ = 0;
};

}  // namespace desk
