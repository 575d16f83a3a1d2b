#include "host/api/types.h"

#include <algorithm>

#include "host/api/host.h"

const UIDRef UIDRef::gNull{};
const UIDRef kInvalidUIDRef{};

UIDList::UIDList(IPMUnknown* object) {
    const UIDRef reference = GetUIDRef(object);
    database_ = reference.GetDataBase();
    if (reference.GetUID() != kInvalidUID) uids_.push_back(reference.GetUID());
}

bool UIDList::Contains(UID uid) const {
    return std::find(uids_.begin(), uids_.end(), uid) != uids_.end();
}

UIDRef UIDList::GetRef(int32_t index) const {
    return index >= 0 && index < Length() ? UIDRef(database_, uids_[static_cast<size_t>(index)]) : UIDRef::gNull;
}

UID UIDList::operator[](int32_t index) const {
    return index >= 0 && index < Length() ? uids_[static_cast<size_t>(index)] : kInvalidUID;
}
