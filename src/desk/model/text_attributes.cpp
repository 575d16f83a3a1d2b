#include "desk/model/text_attributes.h"

#include <functional>
#include <type_traits>

namespace desk {
namespace {

void mix(size_t& seed, size_t value) {
    seed ^= value + 0x9e3779b97f4a7c15ull + (seed << 6) + (seed >> 2);
}

template <class T>
size_t hashOf(const T& value) {
    if constexpr (std::is_enum_v<T>) {
        return static_cast<size_t>(value);
    } else {
        return std::hash<T>{}(value);
    }
}

size_t hashOf(const Leading& leading) {
    return leading.automatic ? 1 : std::hash<double>{}(leading.value);
}

size_t hashOf(const std::vector<TabStop>& stops) {
    size_t seed = stops.size();
    for (const TabStop& stop : stops) mix(seed, std::hash<double>{}(stop.position));
    return seed;
}

}  // namespace

size_t TextAttributes::hash() const {
    size_t seed = 0;
    size_t index = 0;
#define DESK_ATTRIBUTE(type, name, initial) \
    ++index;                                \
    if (name) {                             \
        mix(seed, index);                   \
        mix(seed, hashOf(*name));           \
    }
#include "desk/model/attributes.def"
#undef DESK_ATTRIBUTE
    return seed;
}

void TextAttributes::overlay(const TextAttributes& stronger) {
#define DESK_ATTRIBUTE(type, name, initial) \
    if (stronger.name) name = stronger.name;
#include "desk/model/attributes.def"
#undef DESK_ATTRIBUTE
}

void TextAttributes::subtract(const TextAttributes& other) {
#define DESK_ATTRIBUTE(type, name, initial) \
    if (other.name) name.reset();
#include "desk/model/attributes.def"
#undef DESK_ATTRIBUTE
}

bool TextAttributes::isEmpty() const {
#define DESK_ATTRIBUTE(type, name, initial) \
    if (name) return false;
#include "desk/model/attributes.def"
#undef DESK_ATTRIBUTE
    return true;
}

void ResolvedAttributes::apply(const TextAttributes& stronger) {
#define DESK_ATTRIBUTE(type, name, initial) \
    if (stronger.name) name = *stronger.name;
#include "desk/model/attributes.def"
#undef DESK_ATTRIBUTE
}

}  // namespace desk
