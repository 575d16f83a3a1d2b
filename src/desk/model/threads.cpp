// Frames and stories: the chain of frames that shows a story, and the columns that the border counts beside each frame.
#include <algorithm>
#include <unordered_set>

#include "desk/model/document.h"

namespace desk {

Uid Document::newUidBeside(Kind kind, Uid item) {
    const Uid uid = newUid(kind, nullptr);
    entries_[uid].frame = item;
    return uid;
}

Uid Document::multiColumnFrame(Uid textFrame) {
    const PageItem* frame = item(textFrame);
    if (!frame || frame->kind != ItemKind::TextFrame) return 0;
    Uid& made = beside_[textFrame].multiColumn;
    if (made == 0) made = newUidBeside(Kind::MultiColumnFrame, textFrame);
    return made;
}

Uid Document::textColumn(Uid textFrame, int column) {
    const PageItem* frame = item(textFrame);
    if (!frame || frame->kind != ItemKind::TextFrame || column < 0) return 0;
    std::vector<Uid>& made = beside_[textFrame].columns;
    while (made.size() <= static_cast<size_t>(column)) made.push_back(newUidBeside(Kind::TextColumn, textFrame));
    return made[static_cast<size_t>(column)];
}

Uid Document::frameOfMultiColumn(Uid multiColumn) const {
    return kindOf(multiColumn) == Kind::MultiColumnFrame ? entries_[multiColumn].frame : 0;
}

Uid Document::frameOfTextColumn(Uid column) const {
    return kindOf(column) == Kind::TextColumn ? entries_[column].frame : 0;
}

Uid Document::anchoredObject(Uid itemUid) {
    if (!item(itemUid)) return 0;
    Uid& made = beside_[itemUid].anchored;
    if (made == 0) made = newUidBeside(Kind::AnchoredObject, itemUid);
    return made;
}

Uid Document::itemOfAnchoredObject(Uid anchored) const {
    return kindOf(anchored) == Kind::AnchoredObject ? entries_[anchored].frame : 0;
}

Uid Document::storyHolding(Uid itemUid) const {
    for (Uid uid : stories)
        for (const OwnedItem& owned : story(uid)->content().ownedItems)
            if (owned.item == itemUid) return uid;
    return 0;
}

void Document::removeBeside(Uid itemUid) {
    const auto found = beside_.find(itemUid);
    if (found == beside_.end()) return;
    // Entry 0 names nothing, so that what was never asked for needs no test.
    entries_[found->second.multiColumn] = Entry{};
    entries_[found->second.anchored] = Entry{};
    for (Uid column : found->second.columns) entries_[column] = Entry{};
    beside_.erase(found);
}

void Document::findThreads() const {
    threads_.clear();
    for (const PageItem& first : itemStore_) {
        if (first.kind != ItemKind::TextFrame || !story(first.story) || threads_.contains(first.story)) continue;
        // Walk back to the thread's start; a circle is entered where the walk began.
        const PageItem* start = &first;
        std::unordered_set<Uid> seen{start->uid};
        while (const PageItem* before = item(start->previousFrame)) {
            if (before->story != first.story || !seen.insert(before->uid).second) break;
            start = before;
        }
        if (const PageItem* before = item(start->previousFrame); before && before->story == first.story) start = &first;
        std::vector<Uid>& thread = threads_[first.story];
        seen.clear();
        for (const PageItem* next = start; next && next->story == first.story; next = item(next->nextFrame)) {
            if (!seen.insert(next->uid).second) break;
            thread.push_back(next->uid);
        }
    }
    threadsKnown_ = true;
}

const std::vector<Uid>& Document::framesOfStory(Uid storyUid) const {
    static const std::vector<Uid> none;
    if (!threadsKnown_) findThreads();
    const auto found = threads_.find(storyUid);
    return found == threads_.end() ? none : found->second;
}

void Document::unlinkFrame(const PageItem& frame) {
    if (PageItem* before = item(frame.previousFrame)) before->nextFrame = frame.nextFrame;
    if (PageItem* after = item(frame.nextFrame)) after->previousFrame = frame.previousFrame;
    threadsChanged();
}

Matrix Document::toSpread(const PageItem& item) const {
    Matrix matrix = item.transform;
    int depth = 0;
    for (const PageItem* parent = this->item(item.parent); parent && depth < 256; parent = this->item(parent->parent)) {
        matrix = parent->transform.after(matrix);
        ++depth;
    }
    return matrix;
}

Uid Document::pageOfItem(const PageItem& item) const {
    const Spread* holder = spread(item.spread);
    if (!holder) return 0;
    const Rect bounds = toSpread(item).boundsOf(boundsOf(item.path));
    const Point middle{(bounds.left + bounds.right) / 2, (bounds.top + bounds.bottom) / 2};
    Uid nearest = 0;
    double smallest = 0;
    for (Uid uid : holder->pages) {
        const Page* found = page(uid);
        if (!found) continue;
        const Rect rect = found->rectInSpread();
        const double x = std::max({rect.left - middle.x, 0.0, middle.x - rect.right});
        const double y = std::max({rect.top - middle.y, 0.0, middle.y - rect.bottom});
        const double distance = x * x + y * y;
        if (nearest == 0 || distance < smallest) {
            nearest = uid;
            smallest = distance;
        }
    }
    return nearest;
}

}  // namespace desk
