#include "pdf/traversal.h"

#include "pdf/limits.h"

namespace vornaset {

namespace {

std::atomic<uint64_t> lastMark{0};

/// A container whose children are being walked. The handle keeps it, since a procedure may edit the graph.
struct Level {
    Handle<MyPDFObj> container;
    int64_t next = 0;
};

/// Sets the running traversal's mark for as long as this lives.
class RunningMark {
  public:
    explicit RunningMark(uint64_t mark) { Traversal::runningMark() = mark; }
    ~RunningMark() { Traversal::runningMark() = 0; }
    RunningMark(const RunningMark&) = delete;
    RunningMark& operator=(const RunningMark&) = delete;
};

/// Depth first with a list of its own for a stack: a foreign file decides how deep the graph is. Each level holds a
/// handle, but the first, whose object the caller holds.
uint8_t walkLevels(MyPDFObj& start, EnumChildrenProc proc, void* userData) {
    std::vector<Level> levels(1);
    size_t told = 0;
    while (!levels.empty()) {
        Level& level = levels.back();
        MyPDFObj& holder = level.container ? *level.container.get() : start;
        MyPDFObj* child = Traversal::childOf(holder, level.next);
        if (child == nullptr) {
            levels.pop_back();
            continue;
        }
        ++level.next;
        if (!isUnvisitedContainer(*child)) continue;
        if (++told > pdf_limits::kMaximumToldObjects && Traversal::runningMark() == 0) return 0;
        const Handle<MyPDFObj> kept = Handle<MyPDFObj>::share(child);
        if (proc(kept, userData) != 0) {
            levels.push_back({kept, 0});
        } else if (levels.size() == 1) {
            return 0;
        } else {
            levels.pop_back();
        }
    }
    return 1;
}

}  // namespace

uint64_t& Traversal::runningMark() noexcept {
    thread_local uint64_t mark = 0;
    return mark;
}

uint64_t Traversal::newMark() noexcept {
    return lastMark.fetch_add(1, std::memory_order_relaxed) + 1;
}

uint8_t Traversal::walk(MyPDFObj& start, EnumChildrenProc proc, void* userData) {
    if (runningMark() == 0 && hasCycle(start)) {
        const RunningMark running(newMark());
        return walkLevels(start, proc, userData);
    }
    return walkLevels(start, proc, userData);
}

uint8_t Traversal::walkOnce(MyPDFObj& start, EnumChildrenProc proc, void* userData) {
    const RunningMark running(newMark());
    return start.enumChildren(proc, userData);
}

bool Traversal::hasCycle(MyPDFObj& start) {
    const uint64_t onPath = newMark();
    const uint64_t done = newMark();
    struct Place {
        MyPDFObj* container;
        int64_t next;
    };
    std::vector<Place> path{{&start, 0}};
    start.mark_ = onPath;
    while (!path.empty()) {
        Place& place = path.back();
        MyPDFObj* child = place.container->childAt(place.next);
        if (child == nullptr) {
            place.container->mark_ = done;
            path.pop_back();
            continue;
        }
        ++place.next;
        if (child->mark_ == onPath) return true;
        if (child->mark_ == done || !child->isContainer()) continue;
        child->mark_ = onPath;
        path.push_back({child, 0});
    }
    return false;
}

uint8_t MyPDFObj::enumChildren(const Handle<MyPDFObj>& object, EnumChildrenProc proc, void* userData) {
    return object->isContainer() ? Traversal::walkOnce(*object, proc, userData) : 0;
}

bool isUnvisitedContainer(const MyPDFObj& object) {
    if (!object.isContainer()) return false;
    const uint64_t running = Traversal::runningMark();
    if (running == 0) return true;
    if (object.mark_ == running) return false;
    object.mark_ = running;
    return true;
}

}  // namespace vornaset
