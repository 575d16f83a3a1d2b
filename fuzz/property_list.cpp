// Whatever the bytes are: they are read as a property list or refused, and what was read can be written and read again.

#include "support/property_list.h"

#include <cstdint>
#include <cstdlib>

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace vornaset;
    const Value value = propertyListWithData(Data::withBytes(data, size));
    if (value.isNull()) return 0;
    (void)value.description();
    const Data written = propertyListData(value);
    // A number that isn't finite can be read and has no written form.
    if (!written.isNull()) require(!propertyListWithData(written).isNull());
    return 0;
}
