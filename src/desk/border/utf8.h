#pragma once
// Text of the border as the model keeps names and labels.

#include <string>
#include <string_view>

namespace desk {

/// UTF-8 of UTF-16 text; a surrogate that stands alone becomes U+FFFD.
std::string utf8Of(std::u16string_view text);

}  // namespace desk
