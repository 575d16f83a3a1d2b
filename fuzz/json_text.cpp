// Whatever the bytes are: they are read as JSON or refused, and what was read is written and reads back as the same.
// The first byte holds the options for writing.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "support/json.h"

namespace {

using namespace vornaset;

void require(bool holds) {
    if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const Value value = jsonObjWithData(Data::withBytes(data + 1, size - 1));
    if (value.isNull()) return 0;
    require(value.isArray() || value.isDictionary());
    (void)value.description();
    const Data written = jsonData(value, data[0]);
    require(!written.isNull());
    require(jsonObjWithData(written) == value);
    require(jsonString(value, data[0]).utf8() == written.view());
    return 0;
}
