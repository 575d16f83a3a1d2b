#pragma once
// Text attributes out, as ranges of stories carry them.

#include <string>

#include "desk/model/text_attributes.h"

namespace desk {

/// A range's attributes in two pieces: what stands in its tag, each with a blank in front, and what stands in its
/// Properties (without that element). Conditional hiding can't be written: it belongs to conditions and not to text.
struct WrittenAttributes {
    std::string tag;
    std::string properties;
};

WrittenAttributes writeTextAttributes(const TextAttributes& attributes);

}  // namespace desk
