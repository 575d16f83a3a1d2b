#include "support/measuring.h"

#include <unistd.h>

#include <cstdint>
#include <fstream>

namespace vornaset {

float usedMemory(const std::string& statusPath) {
    // The program's whole size, then the part that is in memory, in pages.
    uint64_t whole = 0;
    uint64_t resident = 0;
    std::ifstream file(statusPath);
    if (!(file >> whole >> resident)) return 0;
    const auto bytes = static_cast<double>(resident * static_cast<uint64_t>(sysconf(_SC_PAGESIZE)));
    return static_cast<float>(bytes * 0x1p-20);
}

float getUsedMemory() {
    return usedMemory("/proc/self/statm");
}

}  // namespace vornaset
