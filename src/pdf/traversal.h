#pragma once
// Walks through a graph of PDF objects. Which objects a walk has met is a mark in each object: the number of the walk.

#include <cstdint>
#include <vector>

#include "pdf/pdf_obj.h"

namespace vornaset {

class Traversal {
  public:
    /// What MyPDFObj::enumChildren does for containers.
    static uint8_t walk(MyPDFObj& start, EnumChildrenProc proc, void* userData);
    /// The class operation's part: walks with a set of its own, which is gone when it ends, however it ends.
    static uint8_t walkOnce(MyPDFObj& start, EnumChildrenProc proc, void* userData);

    /// A number that no object bears as its mark yet.
    static uint64_t newMark() noexcept;
    static uint64_t markOf(const MyPDFObj& object) noexcept { return object.mark_; }
    static void setMark(const MyPDFObj& object, uint64_t mark) noexcept { object.mark_ = mark; }
    static MyPDFObj* childOf(const MyPDFObj& object, int64_t index) { return object.childAt(index); }

    /// The running traversal's mark, 0 when none runs. One for each thread: documents don't share objects across
    /// threads.
    static uint64_t& runningMark() noexcept;

  private:
    static bool hasCycle(MyPDFObj& start);
};

}  // namespace vornaset
