#pragma once

#include <stdexcept>
#include <string>

namespace barcode {

/// No symbol can be made of a code. The text is one sentence for a person, with the code in it.
class Refusal : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace barcode
