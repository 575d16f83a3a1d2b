#pragma once
// Finding circles among objects that each have at most one parent.

#include <algorithm>
#include <unordered_set>
#include <vector>

namespace desk {

/// The members of the circle that the way from `start` over its parents runs into; empty when it ends. `parentOf` gives
/// null for none. Objects in `good` are known to lead nowhere bad, and the way's own are added when it ends.
template <class Object, class ParentOf>
std::vector<const Object*> circleFrom(const Object* start, ParentOf parentOf, std::unordered_set<const Object*>& good) {
    std::vector<const Object*> way;
    std::unordered_set<const Object*> onWay;
    for (const Object* object = start; object && !good.contains(object); object = parentOf(*object)) {
        if (!onWay.insert(object).second)
            return std::vector<const Object*>(std::find(way.begin(), way.end(), object), way.end());
        way.push_back(object);
    }
    good.insert(way.begin(), way.end());
    return {};
}

}  // namespace desk
