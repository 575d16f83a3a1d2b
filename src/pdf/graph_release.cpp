#include "pdf/graph_release.h"

#include "pdf/traversal.h"

namespace vornaset {

namespace {

template <class Visitor>
void visitContainers(const MyPDFObj& holder, Visitor visitor) {
    for (int64_t index = 0; MyPDFObj* child = Traversal::childOf(holder, index); ++index) {
        if (child->isContainer()) visitor(*child);
    }
}

}  // namespace

// Trial deletion: among the gathered containers, who has more handles than the gathered ones hold is held from outside,
// and with it all below. The rest holds only each other and is emptied, so that the counts end it.
void GraphRelease::release(std::vector<Handle<MyPDFObj>> objects, uint64_t stillInUse) {
    const uint64_t gathered = Traversal::newMark();
    gather(objects, stillInUse, gathered);
    countInnerReferences(objects, gathered);
    const uint64_t held = markWhatIsHeld(objects, gathered);
    for (const Handle<MyPDFObj>& object : objects) {
        if (object->mark_ != held) object->dropChildren();
    }
}

/// Leaves each container below the objects, and each of them that is one, exactly once in the list.
void GraphRelease::gather(std::vector<Handle<MyPDFObj>>& objects, uint64_t stillInUse, uint64_t mark) {
    std::vector<Handle<MyPDFObj>> found;
    const auto take = [&](MyPDFObj& object) {
        if (object.mark_ == mark || (stillInUse != 0 && object.mark_ == stillInUse)) return;
        object.mark_ = mark;
        object.innerReferences_ = 1;  // the handle in the list
        found.push_back(Handle<MyPDFObj>::share(&object));
    };
    for (const Handle<MyPDFObj>& object : objects) {
        if (object->isContainer()) take(*object);
    }
    objects.clear();
    for (size_t next = 0; next < found.size(); ++next) {
        const Handle<MyPDFObj> holder = found[next];
        visitContainers(*holder, take);
    }
    objects = std::move(found);
}

void GraphRelease::countInnerReferences(const std::vector<Handle<MyPDFObj>>& objects, uint64_t mark) {
    for (const Handle<MyPDFObj>& object : objects) {
        visitContainers(*object, [&](MyPDFObj& child) {
            if (child.mark_ == mark) ++child.innerReferences_;
        });
    }
}

uint64_t GraphRelease::markWhatIsHeld(const std::vector<Handle<MyPDFObj>>& objects, uint64_t mark) {
    const uint64_t held = Traversal::newMark();
    std::vector<MyPDFObj*> heldObjects;
    const auto hold = [&](MyPDFObj& object) {
        if (object.mark_ != mark) return;
        object.mark_ = held;
        heldObjects.push_back(&object);
    };
    for (const Handle<MyPDFObj>& object : objects) {
        if (object->useCount() > object->innerReferences_ || !object->holdsChildrenAlone()) hold(*object);
    }
    for (size_t next = 0; next < heldObjects.size(); ++next) visitContainers(*heldObjects[next], hold);
    return held;
}

}  // namespace vornaset
