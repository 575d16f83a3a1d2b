#include "merge/image_slots.h"

#include "records/merge_records.h"
#include "support/dictionary_access.h"

namespace vornaset {

unsigned char collectImageSlot(UIDRef& frame, void* job) {
    if (!isEmptyPictureFrame(frame) || frameNumberForFrame(frame) < 1) return 1;
    const Dictionary& run = *static_cast<const Dictionary*>(job);
    arrayForKey(run, kImageSlots, uint8_t{1}).add(Number(frame.GetUID().Get()));
    return 1;
}

void fillImageSlots(IDataBase*, const Dictionary&, int32_t) {}

}  // namespace vornaset
