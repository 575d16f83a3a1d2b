// The seeds of the fuzz target, and what it once found, run as ordinary tests.
#include "../fuzz/csv_table.cpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

TEST(FuzzSeeds, EveryTableIsReadOrRefused) {
    size_t seeds = 0;
    for (const auto& entry : std::filesystem::directory_iterator(VORNASET_SOURCE_DIR "/fuzz/seeds/csv_table")) {
        std::ostringstream text;
        text << std::ifstream(entry.path(), std::ios::binary).rdbuf();
        std::string bytes = text.str();
        LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
        ++seeds;
    }
    EXPECT_GT(seeds, 30u);
}

}  // namespace
