#pragma once
// Letting go of a graph of objects that may hold each other in a ring: a page, its annotation, the page.

#include <cstdint>
#include <vector>

#include "pdf/pdf_obj.h"

namespace vornaset {

class GraphRelease {
  public:
    /// Gives up the handles. Of the containers that they lead to, those go that are held by nothing but each other;
    /// what a handle elsewhere leads to stays whole, and so does a container whose list or map somebody else holds.
    /// Containers that bear `stillInUse` as their mark are left alone, with all below them (0: none).
    static void release(std::vector<Handle<MyPDFObj>> objects, uint64_t stillInUse = 0);

  private:
    static void gather(std::vector<Handle<MyPDFObj>>& objects, uint64_t stillInUse, uint64_t mark);
    static void countInnerReferences(const std::vector<Handle<MyPDFObj>>& objects, uint64_t mark);
    static uint64_t markWhatIsHeld(const std::vector<Handle<MyPDFObj>>& objects, uint64_t mark);
};

}  // namespace vornaset
