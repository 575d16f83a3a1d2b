#include "desk/model/text_attributes.h"

namespace desk {

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
