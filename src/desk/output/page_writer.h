#pragma once
// One page after another. What stays from one page set to the next is written once, as form XObjects.

#include <unordered_map>

#include "desk/output/item_painter.h"
#include "desk/output/page_items.h"
#include "desk/output/page_tree.h"

namespace desk {

class PageWriter {
  public:
    PageWriter(const Document& document, ItemPainter& items, SharedObjects& shared, PageTree& tree)
        : document_(document), items_(items), shared_(shared), tree_(tree) {}

    /// Writes the page as it stands now. Throws InputError for a page that the document doesn't have or that has no
    /// area, and when the file can't be written.
    void write(Uid page);

  private:
    /// An item of a template page and what it painted last.
    struct Slot {
        ShownItem shown;
        std::vector<uint64_t> signature;
        Fragment content;
        uint64_t version = 0;    ///< a number of its own for each content
        uint32_t stableFor = 0;  ///< page sets since it changed
        /// Page sets without change before it goes into a form; doubles with each change after that, so that an item
        /// that changes now and then doesn't leave form after form in the file.
        uint32_t wanted = 1;
    };
    struct Form {
        std::vector<uint64_t> versions;
        Resource resource;
        uint64_t lastUsed = 0;
    };
    /// What is known of one template page.
    struct Template {
        PageBoxes boxes;
        Sheet sheet;
        std::string boxEntries;  ///< of the page dictionary
        LookCache looks;
        std::vector<Slot> slots;  ///< in painting order
        std::vector<Form> forms;
        uint64_t sets = 0;
    };

    Template& templateOf(const Page& page);
    void updateSlots(Template& page);
    void updateSlot(Template& page, Slot& slot);
    void assemble(Template& page);
    size_t endOfStableRun(const Template& page, size_t start) const;
    const Resource& formOf(Template& page, size_t start, size_t end);
    void writePageObject(const Template& page);

    const Document& document_;
    ItemPainter& items_;
    SharedObjects& shared_;
    PageTree& tree_;
    std::unordered_map<Uid, Template> templates_;
    uint64_t lastVersion_ = 0;
    // Room that every page uses again.
    std::vector<ShownItem> shown_;
    std::vector<uint64_t> signature_;
    Fragment content_;
    ContentBuffer object_;
};

}  // namespace desk
