#include "support/error.h"

namespace vornaset {

Error::Error(const std::error_code& code) : code_(code.value()) {
    if (code) description_ = String::fromDamagedUTF8(code.message());
}

}  // namespace vornaset
